// A print server made for the test, which knows one printer and answers every question with its
// state.
#include "core/platform/desktop/spooler.h"
#include "support/dataTable.h"
#include "support/faults.h"

#include <QTest>

#include <atomic>
#include <optional>
#include <thread>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace veltrona;

namespace {

QByteArray attribute(char tag, const QByteArray &name, const QByteArray &value) {
    const auto counted = [](const QByteArray &text) {
        return QByteArray(1, '\0') + char(text.size()) + text;
    };
    return tag + counted(name) + counted(value);
}

QByteArray answer(char state, bool accepting) {
    const QByteArray body =
        QByteArray("\x02\x00\x00\x00\x00\x00\x00\x01\x01", 9) +
        attribute(0x47, "attributes-charset", "utf-8") +
        attribute(0x48, "attributes-natural-language", "en") + '\x04' +
        attribute(0x42, "printer-name", "office") +
        attribute(0x23, "printer-state", QByteArray(3, '\0') + state) +
        attribute(0x44, "printer-state-reasons", "paused") +
        attribute(0x41, "printer-state-message", "out for repair") +
        attribute(0x45, "printer-uri-supported", "ipp://localhost/printers/office") +
        attribute(0x22, "printer-is-accepting-jobs", QByteArray(1, char(accepting))) + '\x03';
    return "HTTP/1.1 200 OK\r\nContent-Type: application/ipp\r\nContent-Length: " +
           QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

/// Answers each message that ends an IPP question, on a connection after the other.
class PrintServer {
public:
    std::atomic<char> state = 3;
    std::atomic<bool> accepting = true;

    PrintServer() {
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        static in_port_t port = 0; // CUPS asks for the server's place once
        place.sin_port = port;
        const int again = 1;
        setsockopt(m_listening, SOL_SOCKET, SO_REUSEADDR, &again, sizeof again);
        socklen_t size = sizeof place;
        auto *address = reinterpret_cast<sockaddr *>(&place);
        if (bind(m_listening, address, size) != 0 || listen(m_listening, 8) != 0 ||
            getsockname(m_listening, address, &size) != 0)
            qFatal("no place for a server");
        port = place.sin_port;
        qputenv("CUPS_SERVER", "127.0.0.1:" + QByteArray::number(ntohs(place.sin_port)));
        m_thread = std::thread([this] { serve(); });
    }
    ~PrintServer() {
        shutdown(m_listening, SHUT_RDWR);
        m_thread.join();
        close(m_listening);
    }
    PrintServer(const PrintServer &) = delete;
    PrintServer &operator=(const PrintServer &) = delete;

private:
    void serve() const {
        for (int client; (client = accept(m_listening, nullptr, nullptr)) >= 0; close(client)) {
            QByteArray asked;
            char part[4096];
            for (ssize_t got; (got = read(client, part, sizeof part)) > 0;) {
                asked.append(part, got);
                const bool isWhole = asked.contains("\r\n\r\n") && asked.endsWith('\x03');
                const QByteArray reply = isWhole ? answer(state, accepting) : QByteArray();
                if (write(client, reply.constData(), size_t(reply.size())) > 0)
                    asked.clear();
            }
        }
    }

    int m_listening = socket(AF_INET, SOCK_STREAM, 0);
    std::thread m_thread;
};

} // namespace

class SpoolerTest : public QObject {
    Q_OBJECT

    std::optional<PrintServer> m_server;

private slots:
    void init() { m_server.emplace(); }
    void printersThatCannotPrint_data() {
        const test::DataTable<char, bool, QString> row;
        row("idle", 3, true, "");
        row("printing", 4, true, "");
        row("stopped", 5, true, "The printer \"office\" is stopped: out for repair.");
        row("closed", 3, false, "The printer \"office\" takes no jobs: out for repair.");
    }
    void printersThatCannotPrint() {
        const auto [state, accepting, told] = test::row<char, bool, QString>();
        m_server->state = state;
        m_server->accepting = accepting;
        desktop::requireSpooler();
        const auto failure = failureOf([] { desktop::requireReadyPrinter("office"); });
        QCOMPARE(failure ? failure->text() : QString(), told);
    }

    void aServerThatIsGone() {
        m_server.reset();
        desktop::requireSpooler(); // files can be printed to
        const auto failure = failureOf([] { desktop::requireReadyPrinter("office"); });
        QVERIFY(failure && failure->text().contains("\"office\" can't be reached: "));
        QVERIFY(failureOf([] { desktop::requireTakenJob("office"); }));
    }
};

QTEST_GUILESS_MAIN(SpoolerTest)
#include "spoolerTest.moc"
