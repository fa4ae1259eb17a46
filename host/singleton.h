#pragma once

/// The one object of its kind in the process, created on first use.
///
/// Instantiated only inside the host library, so that a plugin and the program that loads it
/// reach the same object. It is never destroyed: what it holds may be needed by others that end
/// after the program's own objects.
template<typename T>
class Singleton
{
public:
    /// Never null; created by whichever thread asks first.
    static T *instance();
};

// Not inline, so that a module cannot make an object of its own out of it.
template<typename T>
T *Singleton<T>::instance()
{
    static T *const object = new T;
    return object;
}
