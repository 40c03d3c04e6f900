// The web server: which requests it takes, and what it answers.
#include "webserver.h"

#include <sys/socket.h>

#include <algorithm>
#include <charconv>

#include "pagetext.h"
#include "sockets.h"
#include "webconnections.h"
#include "webjson.h"

namespace mlds_viewer {

namespace {

using httplib::Request;
using httplib::Response;

// Each keeps a thread. Pages beyond these ask from time to time.
constexpr int kMostListeners = 24;
constexpr std::size_t kLargestWish = 1 << 16;
constexpr std::size_t kMostEntries = 1000;
constexpr std::size_t kMostChanges = 10000;
constexpr std::chrono::milliseconds kHeartbeat{5000};
// More often nobody can see.
constexpr std::chrono::milliseconds kPause{40};

constexpr const char* kJson = "application/json";
// With its encoding named the server does not compress it, which takes far longer than sending it.
constexpr const char* kJsonAnswer = "application/json; charset=utf-8";

// Nothing is loaded from elsewhere, and nobody else may show or read what is here.
const httplib::Headers kHeaders = {
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
     "img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Referrer-Policy", "no-referrer"},
    {"Cache-Control", "no-store"}};

struct File {
    const char* path;
    const char* type;
    std::string_view text;
};
constexpr const char* kScript = "text/javascript; charset=utf-8";
constexpr File kFiles[] = {{"/", "text/html; charset=utf-8", kIndexHtml},
                           {"/style.css", "text/css; charset=utf-8", kStyleCss},
                           {"/dom.js", kScript, kDomJs},
                           {"/link.js", kScript, kLinkJs},
                           {"/log.js", kScript, kLogJs},
                           {"/main.js", kScript, kMainJs},
                           {"/panels.js", kScript, kPanelsJs},
                           {"/tiers.js", kScript, kTiersJs}};

// A page that changes something says where it comes from; one that only reads may leave it out.
bool IsFromOwnPage(const Request& request, bool bLoopbackOnly) {
    const std::string host = request.get_header_value("Host");
    if (!IsOwnHost(host, bLoopbackOnly)) return false;
    const std::string site = request.get_header_value("Sec-Fetch-Site");
    if (!site.empty() && site != "same-origin" && site != "none") return false;
    const bool bWish = request.method == "POST";
    if (bWish && request.get_header_value("Content-Type") != kJson) return false;
    if (!request.has_header("Origin")) return !bWish;
    return request.get_header_value("Origin") == "http://" + host;
}

void Refuse(Response& response) {
    response.status = 403;
    response.set_content("only for the page of this viewer\n", "text/plain");
}

// Hands only requests of the page on.
httplib::Server::Handler Own(bool bLoopbackOnly, httplib::Server::Handler handler) {
    return [=](const Request& request, Response& response) {
        if (IsFromOwnPage(request, bLoopbackOnly)) return handler(request, response);
        Refuse(response);
    };
}

using WishHandler = std::function<void(const std::string& body, Response&)>;

// The same for requests with a body. That is read to its end in any case, or the rest of it would
// be taken for the next request; but not kept when it is too long.
httplib::Server::HandlerWithContentReader OwnWish(bool bLoopbackOnly, WishHandler handler) {
    return [=](const Request& request, Response& response, const httplib::ContentReader& reader) {
        std::string body;
        bool bFits = true;
        const bool bRead = reader([&](const char* bytes, std::size_t n) {
            bFits = bFits && body.size() + n <= kLargestWish;
            if (bFits) body.append(bytes, n);
            return true;
        });
        if (!IsFromOwnPage(request, bLoopbackOnly)) return Refuse(response);
        if (bRead && bFits) return handler(body, response);
        response.status = 413;
    };
}

std::size_t NumberOf(const Request& request, const char* key, std::size_t otherwise) {
    const std::string text = request.get_param_value(key);
    std::size_t number = otherwise;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

void Answer(Response& response, const std::string& why) {
    response.status = why.empty() ? 200 : 409;
    response.set_content(AnswerJson(why), kJsonAnswer);
}

}  // namespace

bool IsOwnHost(const std::string& header, bool bLoopbackOnly) {
    const std::string host = header.substr(0, header.rfind(':'));
    return host == "localhost" || IsLoopback(host) || (!bLoopbackOnly && IsAddress(host));
}

WebServer::WebServer(Viewer& viewer, const std::string& host, int port)
    : m_viewer(viewer),
      m_pServer(std::make_unique<PatientServer>(kMostListeners)),
      m_bLoopback(IsLoopback(host)) {
    PatientServer& server = *m_pServer;
    // A second viewer must not take half of the requests, as it could by the library's own options.
    server.set_socket_options([](int s) {
        const int on = 1;
        ::setsockopt(s, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
    server.set_tcp_nodelay(true);
    server.set_payload_max_length(kLargestWish);
    server.set_default_headers(kHeaders);
    AddFiles();
    AddEvents();
    AddQuestions();
    AddWishes();
    m_port = port;
    if (port == 0) m_port = server.bind_to_any_port(host);
    const bool bBound = port == 0 ? m_port > 0 : server.bind_to_port(host, port);
    if (!bBound) {
        throw std::runtime_error("cannot serve the page on " + host + ':' + std::to_string(port));
    }
    server.TakeCrowds();
    m_thread = std::thread([this] { m_pServer->listen_after_bind(); });
}

WebServer::~WebServer() {
    m_bEnding = true;
    m_viewer.WakeAll();
    m_pServer->stop();
    m_thread.join();
}

void WebServer::AddFiles() {
    for (const File& file : kFiles) {
        m_pServer->Get(file.path, Own(m_bLoopback, [&file](const Request&, Response& response) {
                           response.set_content(std::string(file.text), file.type);
                       }));
    }
}

// The page is told that something changed, and asks for what it wants to show.
void WebServer::AddEvents() {
    const auto tell = [this](const Request&, Response& response) {
        if (++m_nListeners > kMostListeners) {
            --m_nListeners;
            response.status = 503;
            return;
        }
        auto version = std::make_shared<std::size_t>(static_cast<std::size_t>(-1));
        response.set_chunked_content_provider(
            "text/event-stream",
            [this, version](std::size_t, httplib::DataSink& sink) {
                if (m_bEnding) return false;
                const Status status = m_viewer.WaitForChange(*version, kHeartbeat);
                std::string event = ":\n\n";  // says only that we are alive
                if (status.version != *version) event = "data: " + StatusJson(status) + "\n\n";
                *version = status.version;
                if (!sink.write(event.data(), event.size())) return false;
                std::this_thread::sleep_for(kPause);
                return true;
            },
            [this](bool) { --m_nListeners; });
    };
    m_pServer->Get("/events", Own(m_bLoopback, tell));
}

void WebServer::AddQuestions() {
    const auto structure = [this](const Request& request, Response& response) {
        const Status status = m_viewer.status();
        const std::size_t at = std::clamp(NumberOf(request, "at", status.shown),
                                          std::min(status.first, status.last), status.last);
        const std::size_t since = NumberOf(request, "since", at);
        // Of a page that has not asked for long the newest changes are enough.
        const std::size_t nChanges = at > since ? std::min(at - since, kMostChanges) : 0;
        response.set_content(
            StructureJson(*m_viewer.StructureAt(at), at,
                          ObjectsOf(m_viewer.Entries(at - nChanges + 1, nChanges))),
            kJsonAnswer);
    };
    const auto entries = [this](const Request& request, Response& response) {
        const std::size_t n = std::min(NumberOf(request, "count", kMostEntries), kMostEntries);
        response.set_content(EntriesJson(m_viewer.Entries(NumberOf(request, "from", 1), n)),
                             kJsonAnswer);
    };
    // For a page that there is no room for among those that get events.
    const auto status = [this](const Request&, Response& response) {
        response.set_content(StatusJson(m_viewer.status()), kJsonAnswer);
    };
    m_pServer->Get("/status", Own(m_bLoopback, status));
    m_pServer->Get("/structure", Own(m_bLoopback, structure));
    m_pServer->Get("/entries", Own(m_bLoopback, entries));
}

void WebServer::AddWishes() {
    const auto setField = [this](const std::string& body, Response& response) {
        const std::optional<FieldWish> wish = ReadFieldWish(body);
        Answer(response, wish ? m_viewer.SetField(wish->token, wish->field, wish->value)
                              : "the request is not understood");
    };
    const auto disconnect = [this](const std::string&, Response& response) {
        Answer(response, m_viewer.Disconnect());
    };
    m_pServer->Post("/field", OwnWish(m_bLoopback, setField));
    m_pServer->Post("/disconnect", OwnWish(m_bLoopback, disconnect));
}

}  // namespace mlds_viewer
