#pragma once

#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/FreedesktopWorkspace.h"
#include "Freedesktop/Session/SessionSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace marrowick {

/// A folder of files to open, and the applications that take them.
class OpenTest : public testing::Test {
protected:
    OpenTest()
    {
        for (auto const* handler : { &handlers().text, &handlers().folder, &handlers().picture })
            handler->forget();
    }

    std::string path(std::string const& name) { return folder_.url().path() + "/" + name; }

    FileURL file(std::string const& name, std::string const& content, mode_t mode = 0644)
    {
        writeFile(path(name), content, mode);
        return FileURL(path(name));
    }

    FileURL entryFor(std::string const& path, Recorder const& program, mode_t mode, std::string const& more = {})
    {
        writeFile(path, "[Desktop Entry]\nType=Application\nName=Test\nExec=" + program.path() + " started %U\n" + more,
            mode);
        return FileURL(path);
    }

    static std::string installedPath(std::string const& name)
    {
        return environmentVariable("XDG_DATA_HOME") + "/applications/" + name;
    }

    /// That nothing is on its way to a handler: what is opened afterwards arrives, and is the only thing.
    void expectNothingElse(Recorder const& unwanted)
    {
        auto const last = file("last.txt", "last");
        workspace_.open(last);
        EXPECT_THAT(handlers().text.waitForStart(), testing::Optional(testing::ElementsAre(last.path())));
        EXPECT_FALSE(unwanted.arguments());
    }

    TemporaryFolder folder_;
    FreedesktopWorkspace workspace_ { std::make_shared<XConnection>(), std::make_shared<DeliveryGate>(),
        "org.marrowick.Marrowick" };
};

}
