#include "Freedesktop/Session/PrivateContext.h"

#include <algorithm>

namespace marrowick {

namespace {

/// Wakes the context once, when a deadline passes.
class Alarm {
public:
    Alarm(GMainContext* context, PrivateContext::Clock::time_point deadline)
        : source_(g_timeout_source_new(millisecondsUntil(deadline)))
    {
        g_source_set_priority(source_, G_PRIORITY_HIGH);
        g_source_set_callback(
            source_,
            [](void* hasRung) -> gboolean {
                *static_cast<bool*>(hasRung) = true;
                return G_SOURCE_REMOVE;
            },
            &hasRung_, nullptr);
        g_source_attach(source_, context);
    }
    ~Alarm()
    {
        g_source_destroy(source_);
        g_source_unref(source_);
    }
    Alarm(Alarm const&) = delete;
    Alarm& operator=(Alarm const&) = delete;

    bool hasRung() const { return hasRung_; }

private:
    static guint millisecondsUntil(PrivateContext::Clock::time_point deadline)
    {
        auto const rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - PrivateContext::Clock::now());
        return static_cast<guint>(std::clamp<std::chrono::milliseconds::rep>(rest.count(), 0, G_MAXINT));
    }

    GSource* source_;
    bool hasRung_ = false;
};

}

PrivateContext::PrivateContext()
    : context_(g_main_context_new())
{
}

PrivateContext::~PrivateContext()
{
    g_main_context_unref(context_);
}

void PrivateContext::serveArrived()
{
    while (g_main_context_iteration(context_, FALSE)) { }
}

bool PrivateContext::serveUntil(std::function<bool()> const& condition, Clock::time_point deadline)
{
    if (condition())
        return true;
    Alarm const alarm(context_, deadline);
    while (!alarm.hasRung()) {
        g_main_context_iteration(context_, TRUE);
        if (condition())
            return true;
    }
    // What came in just before the deadline counts, also where this thread had to wait for its turn.
    serveArrived();
    return condition();
}

}
