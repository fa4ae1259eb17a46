#include "host/session.h"

#include "host/abstractdocument.h"

template class Singleton<Session>;

ProgressDisplay::~ProgressDisplay() = default;

void ProgressDisplay::setProgress(const tr::Tr & /*text*/, int /*value*/) {}

Session::Session()
    : progressDisplay(QSharedPointer<ProgressDisplay>::create())
{}

void Session::setCurrentDocument(const QSharedPointer<AbstractDocument> &document)
{
    currentDocument = document;
}

void Session::setProgressDisplay(const QSharedPointer<ProgressDisplay> &display)
{
    progressDisplay = display ? display : QSharedPointer<ProgressDisplay>::create();
}
