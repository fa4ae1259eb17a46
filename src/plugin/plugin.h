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

#include <optional>

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
    /// Reads the connection settings; a change of them takes effect with the next plugin.
    Plugin();
    ~Plugin() override;
    Q_DISABLE_COPY_MOVE(Plugin)

    /// Registers the handler of the customer-edit action.
    bool init() override;
    /// A typed text is the number, unchanged; other input is the base's.
    loyalty::CardNumberAnswer getCardNumber(const loyalty::CardNumberInputData &input) override;
    /// Identifies the customer whose phone is the card's number: looked up, registered when
    /// unknown, the phone confirmed by SMS, the e-mail cared for.
    /// \return Whether the customer is bound to the card; otherwise `lastError` says why not. It is
    /// empty when the service answered but did not send the code.
    bool identifyByCard(QSharedPointer<DocumentCardRecord> &card, ECardNumberType type) override;
    /// Reports a sale as an order. \return Always true: the sale goes on.
    bool commit(const QSharedPointer<AbstractDocument> &document) override;
    /// Takes the customer back from the receipt's plugin data. \return Always true.
    bool restoreLoyaltySystem() override;

    /// Lets the cashier edit the identified customer's data.
    virtual EContext::Result editCustomer(const control::Action &action);
    /// Registers an unknown customer. \return Whether the service did; else see `lastError`.
    virtual bool registerCustomer(const QString &phone);
    /// Has the customer's phone confirmed by a code sent by SMS, unless it is confirmed already.
    /// A code that could not be sent has a message only when there was no connection.
    virtual VerifyResult confirmMobilePhone(const Customer &holder);
    /// Keeps the customer with the receipt and saves the receipt.
    virtual void storePluginData();
    /// Shows a progress text at the till.
    virtual void setProgress(const tr::Tr &text, int value) const;

    void clearLoyaltyData() override;

    /// Sends a confirmation letter when the e-mail is not confirmed; asks for a missing e-mail.
    virtual void checkEmail();
    /// Makes the customer the holder of the card.
    virtual void fillClientInfo(QSharedPointer<DocumentCardRecord> &card,
                                const Customer &holder) const;
    /// Lets the cashier type the data. An empty name in the answer means cancelled.
    virtual CustomerEdit showCustomerEdit(const Customer &shown) const;
    /// Looks a customer up; with `sendLetter` one whose e-mail is not confirmed gets a letter.
    virtual GetCustomerResult getCustomer(const QString &phone, bool sendLetter);
    /// Has the service send a letter, once an address and receipt. An empty address forgets which
    /// addresses have had theirs.
    virtual void sendConfirmationLetter(const QString &email);

protected:
    bool codeSent = false;         ///< An SMS code is on its way in this identification.
    Customer customer;             ///< Identified for the current receipt.
    QSet<QString> confirmedEmails; ///< Addresses whose letter the service accepted.
    QSharedPointer<Converter> converter;
    QSharedPointer<Interface> interface;
    Log4Qt::Logger *logger = nullptr;

private:
    /// Registers an unknown customer and looks it up. \return Nothing on failure, see `lastError`.
    std::optional<Customer> registerAndLookUp(const QString &phone);
    /// Asks for the code sent to the phone until it is right, refused or no longer asked for.
    VerifyResult askForCode(const QString &phone);
};

} // namespace lmmindbox
