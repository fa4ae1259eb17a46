#include <QObject>
#include <QtPlugin>

/// The floor of loading a plugin.
class EmptyPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "EmptyPlugin")
};

#include "emptyplugin.moc"
