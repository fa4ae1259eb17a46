<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="ru">
<context>
    <name></name>
    <message id="dialogChoiceOk">
        <source></source>
        <translation>OK</translation>
    </message>
    <message id="dialogChoiceCancel">
        <source></source>
        <translation>Cancel</translation>
    </message>
    <message id="inputClientBirthDate">
        <source></source>
        <translation>Date of birth</translation>
    </message>
    <message id="inputClientEmail">
        <source></source>
        <translation>E-mail</translation>
    </message>
    <message id="inputClientFemale">
        <source></source>
        <translation>Female</translation>
    </message>
    <message id="inputClientFullName">
        <source></source>
        <translation>Customer's full name</translation>
    </message>
    <message id="inputClientMale">
        <source></source>
        <translation>Male</translation>
    </message>
    <message id="inputClientPhoneNumber">
        <source></source>
        <translation>Phone number</translation>
    </message>
    <message id="inputClientSex">
        <source></source>
        <translation>Sex</translation>
    </message>
    <message id="inputTextFormCancelBtn">
        <source></source>
        <translation>Cancel</translation>
    </message>
    <message id="inputTextFormOkBtn">
        <source></source>
        <translation>OK</translation>
    </message>
    <message id="inputTextFormScanError">
        <source></source>
        <translation>The data cannot be read, please scan again</translation>
    </message>
    <message id="lmmindboxConfirmCanceled">
        <source></source>
        <translation>Entry of the confirmation code was cancelled</translation>
    </message>
    <message id="lmmindboxConfirmCodeError">
        <source></source>
        <translation>The confirmation code could not be checked</translation>
    </message>
    <message id="lmmindboxConfirmCodeMessage">
        <source></source>
        <translation>Enter the code from the SMS to confirm the number</translation>
    </message>
    <message id="lmmindboxConfirmCodeMessageError">
        <source></source>
        <translation>Incorrect confirmation code.
Enter the confirmation code</translation>
    </message>
    <message id="lmmindboxConfirmCodeTitle">
        <source></source>
        <translation>Confirmation code</translation>
    </message>
    <message id="lmmindboxCreateAuthorizedOrderError">
        <source></source>
        <translation>The order could not be created</translation>
    </message>
    <message id="lmmindboxEditCustomerError">
        <source></source>
        <translation>The customer's data could not be changed</translation>
    </message>
    <message id="lmmindboxEditCustomerTitle">
        <source></source>
        <translation>Editing the customer's data</translation>
    </message>
    <message id="lmmindboxEmailConfirmError">
        <source></source>
        <translation>The customer's e-mail could not be confirmed</translation>
    </message>
    <message id="lmmindboxGetCustomerError">
        <source></source>
        <translation>The customer's data could not be retrieved</translation>
    </message>
    <message id="lmmindboxRegisterCustomeTitle">
        <source></source>
        <translation>New customer</translation>
    </message>
    <message id="lmmindboxRegisterCustomerCanceled">
        <source></source>
        <translation>The customer was not added</translation>
    </message>
    <message id="lmmindboxRegisterCustomerChoice">
        <source></source>
        <translation>The customer was not found.
Register the customer?</translation>
    </message>
    <message id="lmmindboxRegisterCustomerError">
        <source></source>
        <translation>The customer could not be registered</translation>
    </message>
    <message id="lmmindboxRegisterCustomerProgress">
        <source></source>
        <translation>Registering the customer</translation>
    </message>
    <message id="lmmindboxRequest">
        <source></source>
        <translation>Contacting the server...</translation>
    </message>
    <message id="lmmindboxSendConfirmCodeProgress">
        <source></source>
        <translation>Sending the confirmation code</translation>
    </message>
    <message id="mindboxNoConnectionError">
        <source></source>
        <translation>No connection to the server</translation>
    </message>
</context>
</TS>
