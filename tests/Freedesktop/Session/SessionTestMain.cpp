#include "Freedesktop/Session/SessionSupport.h"
#include "Freedesktop/Session/TestFileManager.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <csignal>
#include <string_view>

namespace {

/// The program that the bus starts as the session's file manager: writes the first URL it is asked for to a file.
int runAsFileManager(std::string const& recordPath)
{
    marrowick::TestFileManager manager;
    bool const wasAsked = marrowick::waitFor([&] { return !manager.calls().empty(); });
    if (wasAsked)
        marrowick::writeFile(recordPath, manager.calls().front().uris.front());
    return wasAsked ? 0 : 1;
}

}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication application(argc, argv);
    if (argc == 3 && std::string_view(argv[1]) == "--file-manager")
        return runAsFileManager(argv[2]);
    marrowick::handlers();
    return RUN_ALL_TESTS();
}
