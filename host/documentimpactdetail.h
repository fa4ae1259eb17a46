#pragma once

#include "host/export.h"

#include <QLatin1String>

/// The share of a discount on one position.
class HOST_EXPORT DocumentImpactDetail
{
public:
    /// Checks nothing; the queries explain the values.
    DocumentImpactDetail(int posnum, int campaignCode, int discountMode, int impactSource,
                         double discountSum)
        : posnum(posnum)
        , campaignCode(campaignCode)
        , discountMode(discountMode)
        , impactSource(impactSource)
        , discountSum(discountSum)
    {}

    /// The position's number.
    int getPosnum() const { return posnum; }
    /// The shop's campaign that gave the discount; 0 for none.
    int getCampaignCode() const { return campaignCode; }
    /// How the discount came about; 6 is the rounding of the change in the customer's favour.
    int getDiscountMode() const { return discountMode; }
    /// Who gave the discount; 0 is the till's own discount campaigns.
    int getImpactSource() const { return impactSource; }
    /// The amount taken off the position, in the receipt's currency.
    double getDiscountSum() const { return discountSum; }

    /// Calls `visit(name, member)` for each member. The names never change: saved receipts contain
    /// them.
    template<typename Impact, typename Visit>
    static void visitMembers(Impact &impact, const Visit &visit)
    {
        using namespace Qt::StringLiterals;
        visit("campaignCode"_L1, impact.campaignCode);
        visit("discountMode"_L1, impact.discountMode);
        visit("discountSum"_L1, impact.discountSum);
        visit("impactSource"_L1, impact.impactSource);
        visit("posnum"_L1, impact.posnum);
    }

    bool operator==(const DocumentImpactDetail &other) const = default;

private:
    int posnum;
    int campaignCode;
    int discountMode;
    int impactSource;
    double discountSum;
};
