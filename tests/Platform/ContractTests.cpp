#include "Fakes/FakeCollation.h"
#include "Fakes/FakeDefaultsStore.h"
#include "Fakes/FakeLog.h"
#include "Platform/CollationContract.h"
#include "Platform/DefaultsStoreContract.h"
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

TEST(FakeLogTest, KeepsThePromisesOfItsInterface)
{
    FakeLog log;
    contract::logKeepsItsPromises(log, [&] { return log.lines(); });
}

}
}
