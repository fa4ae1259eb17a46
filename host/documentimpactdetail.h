#pragma once

#include "host/export.h"

#include <QLatin1String>

/// One discount as it fell on one position.
class HOST_EXPORT DocumentImpactDetail
{
public:
    /// Nothing is checked; see the queries for what each value means.
    DocumentImpactDetail(int posnum, int campaignCode, int discountMode, int impactSource,
                         double discountSum)
        : posnum(posnum)
        , campaignCode(campaignCode)
        , discountMode(discountMode)
        , impactSource(impactSource)
        , discountSum(discountSum)
    {}

    /// Number of the position on which it fell.
    int getPosnum() const { return posnum; }
    /// Which of the shop's campaigns gave it; 0 for none.
    int getCampaignCode() const { return campaignCode; }
    /// How the discount came about; 6 is the rounding of the change in the customer's favour.
    int getDiscountMode() const { return discountMode; }
    /// Who gave the discount; 0 is the till's own discount campaigns.
    int getImpactSource() const { return impactSource; }
    /// How much the position became cheaper, in the receipt's currency.
    double getDiscountSum() const { return discountSum; }

    /// Calls `visit(name, member)` for each member. The names stand in the receipts that are kept,
    /// so they never change.
    template<typename Impact, typename Visit>
    static void visitMembers(Impact &impact, const Visit &visit)
    {
        visit(QLatin1String("campaignCode"), impact.campaignCode);
        visit(QLatin1String("discountMode"), impact.discountMode);
        visit(QLatin1String("discountSum"), impact.discountSum);
        visit(QLatin1String("impactSource"), impact.impactSource);
        visit(QLatin1String("posnum"), impact.posnum);
    }

    bool operator==(const DocumentImpactDetail &other) const = default;

private:
    int posnum;
    int campaignCode;
    int discountMode;
    int impactSource;
    double discountSum;
};
