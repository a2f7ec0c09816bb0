#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>

class QDBusMessage;

namespace marrowick {

/// What the desktop's thumbnailer is asked for.
struct ThumbnailRequest {
    QString uri;
    QString contentType;
    QString flavor;
};

/// The thumbnailer of the session, which puts thumbnails into the shared cache. Nothing here waits. Main thread only.
class DesktopThumbnailer : public QObject {
    Q_OBJECT

public:
    enum class Outcome : std::uint8_t {
        /// There may be a thumbnail in the cache.
        finished,
        /// There is no thumbnailer, it cannot, or it takes too long.
        failed,
    };
    using Done = std::function<void(Outcome)>;

    explicit DesktopThumbnailer(std::chrono::milliseconds deadline);

    /// Calls `done` once, later, unless this object has ended by then.
    void generate(ThumbnailRequest request, Done done);

private Q_SLOTS:
    void ready(uint handle, QStringList const& uris);
    void error(uint handle, QStringList const& uris, int code, QString const& message);
    void finished(uint handle);

private:
    struct Job {
        ThumbnailRequest request;
        Done done;
        /// Zero until the thumbnailer has answered.
        uint handle = 0;
    };

    void ask(QDBusMessage const& call, std::function<void(QDBusMessage const&)> answered);
    void lookForOwner(quint64 id);
    void lookForActivatable(quint64 id);
    void queue(quint64 id);
    void end(quint64 id, Outcome outcome);
    void endThoseFor(QStringList const& uris, Outcome outcome);

    std::chrono::milliseconds deadline_;
    bool isListening_ = false;
    quint64 lastId_ = 0;
    std::map<quint64, Job> jobs_;
    /// Of jobs whose answer may still be on its way.
    QSet<uint> finishedEarly_;
};

}
