// A companion in a program that is not the file manager it knows: built for each file manager, and each case runs in a
// process of its own, as a companion says only once that it cannot read the windows.

#include "FileManagers/Asker.h"
#include "FileManagers/Host/Host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>

#include <string>
#include <string_view>
#include <vector>

namespace marrowick::companion {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string>& logged()
{
    static std::vector<std::string> lines;
    return lines;
}

/// Keeps what the companion writes into the log.
GLogWriterOutput keepLine(GLogLevelFlags level, GLogField const* fields, gsize count, void*)
{
    for (auto const* field = fields; field != fields + count; ++field) {
        bool const isText = std::string_view(field->key) == "MESSAGE" && field->length < 0;
        auto const* const text = isText ? static_cast<char const*>(field->value) : nullptr;
        if (text && std::string_view(text).starts_with("Marrowick:"))
            logged().emplace_back(text);
    }
    return g_log_writer_standard_streams(level, fields, count, nullptr);
}

class UnknownVersionTest : public testing::Test {
protected:
    UnknownVersionTest()
    {
        // A file manager keeps what it has loaded.
        void* const library = dlopen(MODULE, RTLD_NOW | RTLD_NODELETE);
        if (!library) {
            ADD_FAILURE() << dlerror();
            return;
        }
        auto const function = [&](std::string const& name) { return dlsym(library, (PREFIX + name).c_str()); };
        reinterpret_cast<void (*)(GTypeModule*)>(function("_initialize"))(makeModule());
        listTypes_ = reinterpret_cast<void (*)(GType const**, int*)>(function("_list_types"));
        shutdown_ = reinterpret_cast<void (*)()>(function("_shutdown"));
        isThere_ = waitFor([&] { return asker_.isOwned(name_); });
    }

    std::string const name_ = "org.marrowick.FileManager." FILE_MANAGER;
    Asker asker_;
    void (*listTypes_)(GType const** types, int* count) = nullptr;
    void (*shutdown_)() = nullptr;
    bool isThere_ = false;
};

}

TEST_F(UnknownVersionTest, WithoutWindowsThereIsNothingToSay)
{
    ASSERT_TRUE(isThere_);
    EXPECT_EQ(asker_.state(name_), "([],)");
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(UnknownVersionTest, WindowsOfAnotherTypeAreToldOfOnce)
{
    ASSERT_TRUE(isThere_);
    showWindow("UnknownWindow");
    ASSERT_TRUE(waitFor([&] {
        EXPECT_EQ(asker_.state(name_), "([],)");
        return !logged().empty();
    }));
    EXPECT_EQ(asker_.state(name_), "([],)");
    EXPECT_THAT(logged(), ElementsAre(HasSubstr("this version of " FILE_MANAGER " does not tell")));
}

TEST_F(UnknownVersionTest, WindowsWithoutTheKnownPartsAreToldOfOnce)
{
    ASSERT_TRUE(isThere_);
    showWindow(FILE_MANAGER "Window");
    ASSERT_TRUE(waitFor([&] {
        EXPECT_EQ(asker_.state(name_), "([],)");
        return !logged().empty();
    }));
    EXPECT_EQ(asker_.state(name_), "([],)");
    EXPECT_THAT(logged(), ElementsAre(HasSubstr("this version of " FILE_MANAGER " does not tell")));
}

TEST_F(UnknownVersionTest, AfterItsEndItIsGoneAndHarmless)
{
    ASSERT_TRUE(isThere_);
    showWindow(FILE_MANAGER "Window");
    GType const* types = nullptr;
    int count = 0;
    listTypes_(&types, &count);
    ASSERT_EQ(count, 1);
    EXPECT_NE(types[0], 0);
    shutdown_();
    EXPECT_TRUE(waitFor([&] { return !asker_.isOwned(name_); }));
    showWindow("UnknownWindow");
    shutdown_();
    auto* const provider = g_object_new(types[0], nullptr);
    g_object_unref(provider);
}

}

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    g_log_set_writer_func(marrowick::companion::keepLine, nullptr, nullptr);
    marrowick::companion::startToolkit();
    int const outcome = RUN_ALL_TESTS();
    // A case is asked for by its name.
    return testing::UnitTest::GetInstance()->test_to_run_count() > 0 ? outcome : 1;
}
