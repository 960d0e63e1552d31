#include "core/platform/dialogs/errorFilter.h"

#include "core/platform/dialogs/dialogs.h"

#include <QCoreApplication>

namespace veltrona {

void reportFailure(const Failure &failure) {
    dialogs().message(MessageStyle::OkExclamation, QCoreApplication::applicationName(),
                      QStringLiteral("Error %1: %2").arg(failure.number()).arg(failure.text()));
}

void reportFatal(const char *what) noexcept {
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
            reportFailure(failure);
        } catch (const std::exception &second) {
            reportFatal(second.what());
        }
    } catch (const std::exception &other) {
        reportFatal(other.what());
    } catch (...) {
        reportFatal("unknown error");
    }
}

} // namespace veltrona
