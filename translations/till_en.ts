<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>WindowText</name>
    <message numerus="yes">
        <source>%n receipt(s) of before are still to be reported; that happens by itself.</source>
        <translation>
            <numerusform>%n receipt of before is still to be reported; that happens by itself.</numerusform>
            <numerusform>%n receipts of before are still to be reported; that happens by itself.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>till::MainWindow</name>
    <message numerus="yes">
        <source>Not on the disk: %n receipt(s), %1. They are lost when the till ends now. Make room on the disk first.</source>
        <translation>
            <numerusform>Not on the disk: %n receipt, %1. It is lost when the till ends now. Make room on the disk first.</numerusform>
            <numerusform>Not on the disk: %n receipts, %1. They are lost when the till ends now. Make room on the disk first.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>and %n more line(s)</source>
        <translation>
            <numerusform>and %n more line</numerusform>
            <numerusform>and %n more lines</numerusform>
        </translation>
    </message>
</context>
</TS>
