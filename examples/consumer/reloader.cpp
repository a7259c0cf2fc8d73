// A slot of the program's own is invoked for a signal, which it sends to itself.

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
