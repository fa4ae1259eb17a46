#pragma once

#include <QSharedPointer>

/// Where host services come from: a new one for each call, unless a substitute is registered.
///
/// Instantiated only inside the host library, so that a substitute set by the program is the one
/// that a loaded plugin sees.
template<typename T>
class MockFactory
{
public:
    /// The substitute handed out instead of new objects; never owned, null for none.
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
