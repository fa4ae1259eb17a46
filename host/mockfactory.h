#pragma once

#include <QSharedPointer>

/// Creates the host's services: a new one for each call, unless a substitute is set.
///
/// Instantiated only inside the host library, so that program and plugin share the substitute.
template<typename T>
class MockFactory
{
public:
    /// The substitute returned instead of new objects; not owned, null for none.
    static T *mocked;

    /// The substitute when one is set, otherwise a new object owned by the returned pointer.
    static QSharedPointer<T> create()
    {
        if (mocked)
            return QSharedPointer<T>(mocked, [](T *) {});
        return QSharedPointer<T>::create();
    }
};

template<typename T>
T *MockFactory<T>::mocked = nullptr;
