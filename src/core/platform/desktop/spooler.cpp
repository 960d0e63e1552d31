#include "core/platform/desktop/spooler.h"

#include "core/base/failure.h"
#include "core/base/text.h"

#include <QElapsedTimer>

#include <cups/cups.h>

#include <algorithm>
#include <memory>

namespace veltrona::desktop {

namespace {

constexpr int timeout = 5000; // milliseconds

struct Close {
    void operator()(http_t *server) const { httpClose(server); }
    void operator()(cups_dest_t *printer) const { cupsFreeDests(1, printer); }
    void operator()(ipp_t *message) const { ippDelete(message); }
};
using Server = std::unique_ptr<http_t, Close>;

Server connected() {
    Server server(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                               timeout, nullptr));
    if (server)
        httpSetTimeout(
            server.get(), timeout / 1000.0, [](http_t *, void *) { return 0; }, nullptr);
    return server;
}

[[noreturn]] void fail(const QString &sentence, QString reason) {
    if (reason.endsWith(u'.'))
        reason.chop(1);
    throw Failure(cupsLastError(), sentence + u": "_s + reason + u'.');
}

/// CUPS' text for the last request.
QString lastReason() {
    return QString::fromUtf8(cupsLastErrorString());
}

/// The administrator's printer-state-message, or else printer-state-reasons.
QString stateOf(const Server &server, const char *uri, const QString &keywords) {
    ipp_t *request = ippNewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES); // deleted by cupsDoRequest
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes", nullptr,
                 "printer-state-message");
    const std::unique_ptr<ipp_t, Close> answer(cupsDoRequest(server.get(), request, "/"));
    ipp_attribute_t *message =
        ippFindAttribute(answer.get(), "printer-state-message", IPP_TAG_TEXT);
    const QString text = QString::fromUtf8(message ? ippGetString(message, 0, nullptr) : nullptr);
    return text.isEmpty() ? keywords : text;
}

/// Qt's name of a printer may end in "/" and an instance.
QByteArray queueOf(const QString &printer) {
    return printer.section(u'/', 0, 0).toUtf8();
}

template<typename Visitor>
void visitOwnJobs(http_t *server, const QByteArray &queue, const Visitor &visit) {
    cups_job_t *jobs = nullptr;
    constexpr int own = 1;
    const int count =
        server ? cupsGetJobs2(server, &jobs, queue.constData(), own, CUPS_WHICHJOBS_ACTIVE) : 0;
    for (int i = 0; i < count; ++i)
        visit(jobs[i]);
    if (count > 0)
        cupsFreeJobs(count, jobs);
}

} // namespace

int newestJob(const QString &printer) {
    const Server server = connected();
    int newest = 0;
    visitOwnJobs(server.get(), queueOf(printer),
                 [&](const cups_job_t &job) { newest = std::max(newest, job.id); });
    return newest;
}

void withdrawJobs(const QString &printer, const QString &title, int after) {
    const Server server = connected();
    const QByteArray queue = queueOf(printer);
    visitOwnJobs(server.get(), queue, [&](const cups_job_t &job) {
        if (job.id > after && QString::fromUtf8(job.title) == title)
            cupsCancelJob2(server.get(), queue.constData(), job.id, 0);
    });
}

void requireSpooler() {
    QElapsedTimer sinceAsked;
    sinceAsked.start();
    const Server server = connected();
    if (server)
        cupsGetDefault2(server.get());
    // A missing server fails at once; a long wait means that one doesn't respond.
    if (server ? httpError(server.get()) != 0 : sinceAsked.hasExpired(timeout / 2))
        throw Failure(cupsLastError(), u"The print server \"%1\" doesn't answer."_s.arg(
                                           QString::fromUtf8(cupsServer())));
}

void requireReadyPrinter(const QString &printer) {
    const Server server = connected();
    const QByteArray name = queueOf(printer);
    const std::unique_ptr<cups_dest_t, Close> found(
        server ? cupsGetNamedDest(server.get(), name.constData(), nullptr) : nullptr);
    if (!found)
        fail(u"The printer \"%1\" can't be reached"_s.arg(printer), lastReason());
    const auto option = [&](const char *key) {
        return cupsGetOption(key, found->num_options, found->options);
    };
    const bool isStopped =
        QByteArray(option("printer-state")).toInt() == static_cast<int>(IPP_PSTATE_STOPPED);
    if (!isStopped && QByteArrayView(option("printer-is-accepting-jobs")) != "false")
        return;
    fail((isStopped ? u"The printer \"%1\" is stopped"_s : u"The printer \"%1\" takes no jobs"_s)
             .arg(printer),
         stateOf(server, option("printer-uri-supported"),
                 QString::fromUtf8(option("printer-state-reasons"))));
}

void requireTakenJob(const QString &printer) {
    if (cupsLastError() > IPP_STATUS_OK_EVENTS_COMPLETE)
        fail(u"The printer \"%1\" hasn't taken the report"_s.arg(printer), lastReason());
}

} // namespace veltrona::desktop
