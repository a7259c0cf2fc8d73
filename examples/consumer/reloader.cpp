// Sends itself a signal that invokes a slot.

#include <core/posixsignals.h>

#include <QCoreApplication>
#include <QTimer>

#include <csignal>
#include <cstdio>

class Reloader : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void reload()
    {
        std::puts("reloaded");
        QCoreApplication::quit();
    }
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    Reloader reloader;
    PosixSignals::instance.setup(SIGHUP, &reloader, "reload");
    QTimer::singleShot(0, [] { std::raise(SIGHUP); });
    return QCoreApplication::exec();
}

#include "reloader.moc"
