#pragma once

#include "model/customer.h"
#include "model/customeredit.h"
#include "model/operationresult.h"
#include "model/verifyresult.h"

#include <host/action.h>
#include <host/basicloyaltysystem.h>
#include <host/econtext.h>
#include <host/loyaltytypes.h>
#include <host/tr.h>

#include <QObject>
#include <QSet>
#include <QSharedPointer>
#include <QString>

namespace Log4Qt {
class Logger;
}

namespace lmmindbox {

class Converter;
class Interface;

/// The loyalty system that the till host loads. It identifies a customer by mobile phone and
/// reports every committed sale to the service as an order.
///
/// The host calls it on one thread, one operation at a time; an operation blocks while a dialog is
/// open or a request is under way. Every step calls the next one virtually.
class Plugin : public QObject, public BasicLoyaltySystem
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "LmMindbox" FILE "plugin.json")
    Q_INTERFACES(BasicLoyaltySystem BasicPlugin)

public:
    /// Reads the connection settings and the status of sold lines; a later change needs a new
    /// plugin.
    Plugin();
    ~Plugin() override;
    Q_DISABLE_COPY_MOVE(Plugin)

    /// Registers the handler of the customer-edit action. \return The base's result.
    bool init() override;
    /// Takes a typed text as the number, unchanged and unchecked; the base handles other input.
    loyalty::CardNumberAnswer getCardNumber(const loyalty::CardNumberInputData &input) override;
    /// Identifies the customer whose phone is the card's number: looks the customer up, registers
    /// an unknown one, confirms the phone by SMS and takes care of the e-mail. Forgets an earlier
    /// customer in any case.
    /// \return Whether the customer is bound to the card; otherwise `lastError` has the reason.
    /// `lastError` is empty when the service answered but did not send the code.
    bool identifyByCard(QSharedPointer<DocumentCardRecord> &card, ECardNumberType type) override;
    /// Reports a sale as an order, also without a customer; ignores other receipts. The cashier is
    /// told of a refused order. An order that does not reach the service waits in the till's queue.
    /// \return Always true: the sale goes on.
    bool commit(const QSharedPointer<AbstractDocument> &document) override;
    /// Restores the customer from the receipt's plugin data; does nothing without a card. An
    /// unreadable value leaves its field empty. \return Always true.
    bool restoreLoyaltySystem() override;

    /// Lets the cashier edit the customer's data and sends the change to the service.
    /// \return `Done` when the service accepted the change, `Failed` when not (the cashier is told
    /// why), `Skipped` when the form was cancelled or the action finds no card on the receipt.
    virtual EContext::Result editCustomer(const control::Action &action);
    /// Asks the cashier whether to register the unknown customer, shows the form and sends the
    /// registration. \return Whether the service registered the customer; otherwise `lastError` has
    /// the reason.
    virtual bool registerCustomer(const QString &phone);
    /// Confirms the customer's phone by an SMS code, unless it is confirmed already.
    /// \return Code 0: confirmed; 1: the cashier gave up; 2: the code could not be sent or checked.
    /// A code that was not sent has a message only for a lost connection.
    virtual VerifyResult confirmMobilePhone(const Customer &holder);
    /// Stores the customer with the receipt and saves the receipt.
    virtual void storePluginData();
    /// Shows a progress text at the till; the host defines the meaning of `value`.
    virtual void setProgress(const tr::Tr &text, int value) const;

    /// Forgets the customer, the sent code and the sent letters. The data stored with the receipt
    /// stays.
    void clearLoyaltyData() override;

    /// Sends a confirmation letter for an unconfirmed e-mail; opens the edit form when there is no
    /// e-mail.
    virtual void checkEmail();
    /// Makes the customer the holder of the card. A customer without a name gets a text that says
    /// so; an invalid birthday stays invalid; any sex but "female" is male.
    virtual void fillClientInfo(QSharedPointer<DocumentCardRecord> &card,
                                const Customer &holder) const;
    /// Lets the cashier type the data. An empty name in the result means cancelled.
    virtual CustomerEdit showCustomerEdit(const Customer &shown) const;
    /// Looks a customer up; with `sendLetter`, sends a letter to an unconfirmed e-mail.
    virtual GetCustomerResult getCustomer(const QString &phone, bool sendLetter);
    /// Asks the service for a letter, once for each address and receipt. The cashier is told of a
    /// refused letter, which may be tried again. An empty address clears the list of sent letters.
    virtual void sendConfirmationLetter(const QString &email);

protected:
    bool codeSent = false;         ///< An SMS code was requested in this identification.
    Customer customer;             ///< The customer identified for the current receipt.
    QSet<QString> confirmedEmails; ///< Addresses whose letter the service accepted.
    QSharedPointer<Converter> converter;
    QSharedPointer<Interface> interface;
    Log4Qt::Logger *logger = nullptr;

private:
    /// The cashier's message when the registration failed, or the look-up after it.
    static tr::Tr notRegistered();
    /// Asks the cashier for the code until it is right, the check fails or the cashier gives up.
    VerifyResult askForCode(const QString &phone);
};

} // namespace lmmindbox
