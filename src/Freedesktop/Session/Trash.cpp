#include "Freedesktop/Session/Trash.h"

#include "Freedesktop/Files/FileErrors.h"
#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Session/LongNameTrash.h"

#include <QMetaObject>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace marrowick {

namespace {

bool isError(GError const& error, int code)
{
    return g_error_matches(&error, G_IO_ERROR, code) == TRUE;
}

ErrorKind kindOf(GError const& error)
{
    if (isError(error, G_IO_ERROR_NOT_FOUND))
        return ErrorKind::notFound;
    if (isError(error, G_IO_ERROR_PERMISSION_DENIED) || isError(error, G_IO_ERROR_READ_ONLY))
        return ErrorKind::noPermission;
    return ErrorKind::other;
}

/// Whether GIO finds that the item's file system has, or may have, a trash.
bool canTrash(GFile* file)
{
    constexpr char attribute[] = G_FILE_ATTRIBUTE_ACCESS_CAN_TRASH;
    GObjectOwner<GFileInfo> const info(
        g_file_query_info(file, attribute, G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr, nullptr));
    return info && g_file_info_get_attribute_boolean(info.get(), attribute) == TRUE;
}

}

struct Trash::Job {
    std::vector<FileURL> urls;
    Done done;
    std::size_t next = 0;
    std::optional<Error> firstError;

    void note(Result<void> const& outcome)
    {
        if (!outcome && !firstError)
            firstError = outcome.error();
    }
};

/// One item on its way to the trash.
struct Trash::Pending {
    Trash& trash;
    /// Tells whether `trash` still stands.
    std::weak_ptr<QObject> context;
    std::shared_ptr<Job> job;

    static void finished(GObject* file, GAsyncResult* result, void* data)
    {
        std::unique_ptr<Pending> const pending(static_cast<Pending*>(data));
        GError* error = nullptr;
        bool const succeeded = g_file_trash_finish(G_FILE(file), result, &error) == TRUE;
        GErrorOwner const ownedError(error);
        if (pending->context.expired())
            return;
        if (!succeeded)
            pending->job->note(Error { kindOf(*error), error->message });
        pending->trash.continueWith(pending->job);
    }
};

Trash::Trash()
    : context_(std::make_shared<QObject>())
{
}

Trash::~Trash() = default;

void Trash::recycle(std::vector<FileURL> const& urls, Done done)
{
    auto const job = std::make_shared<Job>(Job { urls, std::move(done), 0, std::nullopt });
    QMetaObject::invokeMethod(
        context_.get(), [this, job] { continueWith(job); }, Qt::QueuedConnection);
}

void Trash::continueWith(std::shared_ptr<Job> const& job)
{
    while (job->next < job->urls.size()) {
        auto const& url = job->urls[job->next++];
        if (!url.path().starts_with('/') || !isSystemPath(url)) {
            job->note(fileError(ENOENT, "Could not move to the Trash", url));
            continue;
        }
        GObjectOwner<GFile> const file(g_file_new_for_path(url.path().c_str()));
        if (needsShorterNameInTrash(url) && canTrash(file.get())) {
            job->note(trashUnderShorterName(url));
            continue;
        }
        auto pending = std::make_unique<Pending>(Pending { *this, context_, job });
        g_file_trash_async(file.get(), G_PRIORITY_DEFAULT, nullptr, Pending::finished, pending.release());
        return;
    }
    job->done(std::move(job->firstError));
}

}
