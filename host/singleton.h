#pragma once

/// The process's only object of a class, created on first use.
///
/// Instantiated only inside the host library, so that program and plugin share the object. It is
/// never destroyed, because static objects that end later may still use it.
template<typename T>
class Singleton
{
public:
    /// Never null; the first caller creates it, in any thread.
    static T *instance();
};

// Not inline, so that a module cannot instantiate its own copy.
template<typename T>
T *Singleton<T>::instance()
{
    static T *const object = new T;
    return object;
}
