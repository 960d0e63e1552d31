#include "core/platform/desktop/spooler.h"

#include "core/base/failure.h"

#include <cups/cups.h>

#include <cerrno>
#include <memory>

namespace veltrona::desktop {

namespace {

constexpr int patience = 5000; // milliseconds

struct Close {
    void operator()(http_t *server) const { httpClose(server); }
    void operator()(cups_dest_t *printer) const { cupsFreeDests(1, printer); }
};
using Server = std::unique_ptr<http_t, Close>;

Server connected() {
    Server server(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                               patience, nullptr));
    if (server)
        httpSetTimeout(
            server.get(), patience / 1000.0, [](http_t *, void *) { return 0; }, nullptr);
    return server;
}

[[noreturn]] void fail(const QString &sentence, const QString &reason) {
    throw Failure(cupsLastError(), sentence + QStringLiteral(": ") + reason + QLatin1Char('.'));
}

/// What the library says of its last question.
QString lastReason() {
    return QString::fromUtf8(cupsLastErrorString());
}

} // namespace

void requireSpooler() {
    errno = 0;
    const Server server = connected();
    if (!server && (errno == ECONNREFUSED || errno == ENOENT))
        return;
    if (server)
        cupsGetDefault2(server.get());
    if (!server || httpError(server.get()) != 0)
        fail(QStringLiteral("The print server \"%1\" doesn't answer")
                 .arg(QString::fromUtf8(cupsServer())),
             lastReason());
}

void requireReadyPrinter(const QString &printer) {
    const Server server = connected();
    // The toolkit parts a printer's name from that of an instance of it.
    const QByteArray name = printer.section(u'/', 0, 0).toUtf8();
    const std::unique_ptr<cups_dest_t, Close> found(
        server ? cupsGetNamedDest(server.get(), name.constData(), nullptr) : nullptr);
    if (!found)
        fail(QStringLiteral("The printer \"%1\" can't be reached").arg(printer), lastReason());
    const auto option = [&](const char *key) {
        return QString::fromUtf8(cupsGetOption(key, found->num_options, found->options));
    };
    const QString reasons = option("printer-state-reasons");
    if (option("printer-state").toInt() == IPP_PSTATE_STOPPED)
        fail(QStringLiteral("The printer \"%1\" is stopped").arg(printer), reasons);
    if (option("printer-is-accepting-jobs") == QLatin1String("false"))
        fail(QStringLiteral("The printer \"%1\" takes no jobs").arg(printer), reasons);
}

void requireTakenJob(const QString &printer) {
    if (cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE)
        fail(QStringLiteral("The printer \"%1\" hasn't taken the report").arg(printer),
             lastReason());
}

} // namespace veltrona::desktop
