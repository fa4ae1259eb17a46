#include "fuzz/fuzzing.h"
#include "tests/support/fakehttp.h"

#include "interface/interface.h"
#include "model/operationresult.h"
#include "model/order.h"

using namespace Qt::StringLiterals;

using namespace lmmindbox;

namespace {

/// Conditions that hold for every answer.
void checkResults(const OperationResult &result, int httpCode)
{
    const auto hasMessage = result.response.contains("errorMessage"_L1);
    require(!hasMessage || !result.success());
    require(result.noConnection == (result.response.isEmpty() && httpCode != 200));
    require(result.noConnection != result.getError({}).isEmpty());

    const GetCustomerResult found(result);
    require(!found.success() || result.success());
    require(!found.customer.found() || found.response.contains("customer"_L1));

    const CreateOrderResult created(result);
    const RegisterCustomerResult registered(result);
    require(!result.noConnection || (!created.success() && !registered.success()));

    const SmsConfirmationResult confirmed(result);
    require(confirmed.response == result.response);
    const Order order(result.response);
    require(order.isEmpty() || !order.data.isEmpty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static FakeRestClient http;
    static const Interface client;
    http.answer = bytesOf({data, size});
    for (const auto code : {200, 400}) {
        http.httpCode = code;
        checkResults(client.getRequestResult(), code);
    }
    return 0;
}
