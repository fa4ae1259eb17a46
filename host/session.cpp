#include "host/session.h"

#include "host/abstractdocument.h"

template class Singleton<Session>;

ProgressDisplay::~ProgressDisplay() = default;

Session::Session()
    : progressDisplay(QSharedPointer<ProgressDisplay>::create())
{}

void Session::setProgressDisplay(const QSharedPointer<ProgressDisplay> &display)
{
    progressDisplay = display ? display : QSharedPointer<ProgressDisplay>::create();
}
