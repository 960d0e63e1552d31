#include "core/platform/dialogs/errorFilter.h"

#include "core/platform/dialogs/dialogs.h"

#include <QCoreApplication>

namespace veltrona {

void tellFailure(const Failure &failure) {
    dialogs().message(MessageStyle::OkExclamation, QCoreApplication::applicationName(),
                      QStringLiteral("Error %1: %2").arg(failure.number()).arg(failure.text()));
}

void tellFatal(const char *what) noexcept {
    try {
        dialogs().message(MessageStyle::OkExclamation, QCoreApplication::applicationName(),
                          QStringLiteral("The program met an error that it can't go on from, and "
                                         "closes: %1.\r%2")
                              .arg(QString::fromLocal8Bit(what), services().fatalNote));
    } catch (const std::exception &second) {
        qCritical("%s", second.what());
    }
    QCoreApplication::exit(1);
}

void filterCurrentException() noexcept {
    try {
        throw;
    } catch (const Failure &failure) {
        try {
            tellFailure(failure);
        } catch (const std::exception &second) {
            tellFatal(second.what());
        }
    } catch (const std::exception &other) {
        tellFatal(other.what());
    } catch (...) {
        tellFatal("unknown error");
    }
}

} // namespace veltrona
