#include "Fakes/FakeCollation.h"
#include "Fakes/FakeDefaultsStore.h"
#include "Fakes/FakeDispatch.h"
#include "Fakes/FakeLog.h"
#include "Platform/CollationContract.h"
#include "Platform/DefaultsStoreContract.h"
#include "Platform/DispatchContract.h"
#include "Platform/LogContract.h"

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST(FakeCollationTest, KeepsThePromisesOfItsInterface)
{
    contract::collationKeepsItsPromises(FakeCollation());
}

TEST(FakeDefaultsStoreTest, KeepsThePromisesOfItsInterface)
{
    FakeDefaultsStore store;
    contract::defaultsStoreKeepsItsPromises(store);
}

TEST(FakeDispatchTest, KeepsThePromisesOfItsInterface)
{
    FakeDispatch dispatch;
    FileURL const folder("/watched");
    contract::directoryWatchKeepsItsPromises(dispatch,
        { .url = folder,
            .addEntry = [&] { dispatch.touch(folder); },
            .remove = [&] { dispatch.remove(folder); },
            .settle = [&] { dispatch.runMain(); },
            .whileHeld =
                [&](auto const& work) {
                    dispatch.hold();
                    work();
                    dispatch.release();
                } });
}

TEST(FakeLogTest, KeepsThePromisesOfItsInterface)
{
    FakeLog log;
    contract::logKeepsItsPromises(log, [&] { return log.lines(); });
}

}
}
