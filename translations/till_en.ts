<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>till::MainWindow</name>
    <message numerus="yes">
        <source>Not saved: %n receipt(s), %1. They will be lost if you leave now. Make room on the disk first.</source>
        <translation>
            <numerusform>Not saved: %n receipt, %1. It will be lost if you leave now. Make room on the disk first.</numerusform>
            <numerusform>Not saved: %n receipts, %1. They will be lost if you leave now. Make room on the disk first.</numerusform>
        </translation>
    </message>
</context>
</TS>
