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

/// The loyalty system that the till host loads: a customer is identified by mobile phone, and
/// every committed sale is reported to the service as an order.
///
/// The host calls it on one thread, one operation at a time; an operation blocks while a dialog is
/// open or a request is under way. Every step calls the next one virtually.
class Plugin : public QObject, public BasicLoyaltySystem
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "LmMindbox" FILE "plugin.json")
    Q_INTERFACES(BasicLoyaltySystem BasicPlugin)

public:
    /// Reads the connection settings and the status of sold lines; a change of them takes effect
    /// with the next plugin.
    Plugin();
    ~Plugin() override;
    Q_DISABLE_COPY_MOVE(Plugin)

    /// Registers the handler of the customer-edit action. \return What the base says.
    bool init() override;
    /// A typed text is the number, unchanged and unchecked; other input is the base's.
    loyalty::CardNumberAnswer getCardNumber(const loyalty::CardNumberInputData &input) override;
    /// Identifies the customer whose phone is the card's number: looked up, registered when
    /// unknown, the phone confirmed by SMS, the e-mail cared for. What was known of another
    /// customer is gone, whatever comes out.
    /// \return Whether the customer is bound to the card; otherwise `lastError` says why not. It is
    /// empty when the service answered but did not send the code.
    bool identifyByCard(QSharedPointer<DocumentCardRecord> &card, ECardNumberType type) override;
    /// Reports a sale as an order, also without a customer; other receipts are passed by. An order
    /// that the service refuses is told to the cashier, one that does not reach it waits in the
    /// till's queue. \return Always true: the sale goes on.
    bool commit(const QSharedPointer<AbstractDocument> &document) override;
    /// Takes the customer back from the receipt's plugin data; without a card nothing is done. A
    /// value that cannot be read leaves its field empty. \return Always true.
    bool restoreLoyaltySystem() override;

    /// Lets the cashier edit the customer's data and has the service change them.
    /// \return `Done` when the service took the change, `Failed` when it did not (the cashier is
    /// told why), `Skipped` when the form was cancelled or the action finds no card on the receipt.
    virtual EContext::Result editCustomer(const control::Action &action);
    /// Asks the cashier whether to register the unknown customer, shows the form and has the
    /// service register what was typed. \return Whether it did; otherwise `lastError` says why not.
    virtual bool registerCustomer(const QString &phone);
    /// Has the customer's phone confirmed by a code sent by SMS, unless it is confirmed already.
    /// \return Code 0 when it is confirmed, 1 when the cashier gave up, 2 when the code could not
    /// be sent or checked; one that was not sent has a message only if there was no connection.
    virtual VerifyResult confirmMobilePhone(const Customer &holder);
    /// Keeps the customer with the receipt and saves the receipt.
    virtual void storePluginData();
    /// Shows a progress text at the till; the host says what `value` means.
    virtual void setProgress(const tr::Tr &text, int value) const;

    /// Forgets the customer, the code sent and the letters sent, but not what was stored with the
    /// receipt.
    void clearLoyaltyData() override;

    /// Sends a confirmation letter when the e-mail is not confirmed; opens the edit form when there
    /// is no e-mail.
    virtual void checkEmail();
    /// Makes the customer the holder of the card. Without a first and last name the holder's name
    /// says so; an invalid birthday stays invalid; any sex but "female" is male.
    virtual void fillClientInfo(QSharedPointer<DocumentCardRecord> &card,
                                const Customer &holder) const;
    /// Lets the cashier type the data. An empty name in the answer means cancelled.
    virtual CustomerEdit showCustomerEdit(const Customer &shown) const;
    /// Looks a customer up; with `sendLetter` one whose e-mail is not confirmed gets a letter.
    virtual GetCustomerResult getCustomer(const QString &phone, bool sendLetter);
    /// Has the service send a letter, once an address and receipt; a refused letter is told to the
    /// cashier and may be tried again. An empty address forgets which addresses have had theirs.
    virtual void sendConfirmationLetter(const QString &email);

protected:
    bool codeSent = false;         ///< An SMS code is on its way in this identification.
    Customer customer;             ///< Identified for the current receipt.
    QSet<QString> confirmedEmails; ///< Addresses whose letter the service accepted.
    QSharedPointer<Converter> converter;
    QSharedPointer<Interface> interface;
    Log4Qt::Logger *logger = nullptr;

private:
    /// What the cashier is told when the service did not register the customer or does not know
    /// it afterwards.
    static tr::Tr notRegistered();
    /// Asks for the code sent to the phone until it is right, refused or no longer asked for.
    VerifyResult askForCode(const QString &phone);
};

} // namespace lmmindbox
