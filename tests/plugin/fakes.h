#pragma once

#include "converter/converter.h"
#include "interface/interface.h"
#include "model/customeredit.h"
#include "tests/support/fakehttp.h"
#include "tests/support/fakequeue.h"
#include "tests/support/logcapture.h"
#include "tests/support/printqt.h"

#include <host/abstractdocument.h>
#include <host/session.h>

#include <QJsonArray>

#include <gmock/gmock.h>

namespace lmmindbox {

using namespace Qt::StringLiterals;

inline QJsonObject json(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

} // namespace lmmindbox
