// What every store of settings does, in memory and in a file.
#include <gtest/gtest.h>

#include "desktop/linux/system/JsonUserDefaults.h"

#include "tests/contract/TemporaryFolder.h"
#include "tests/fakes/FakeSettingsStores.h"

namespace quenlio {
namespace {

struct FakeStores {
  FakeUserDefaultsSuites stores;
};

struct FileStores {
  TemporaryFolder folder;
  JsonUserDefaultsSuites stores{folder.url(), "standard"};
};

template <class Stores>
class UserDefaultsContract : public testing::Test {
 protected:
  UserDefaults& defaults() { return stores.stores.standardUserDefaults(); }
  Stores stores;
};

using Kinds = testing::Types<FakeStores, FileStores>;
TYPED_TEST_SUITE(UserDefaultsContract, Kinds);

TYPED_TEST(UserDefaultsContract, everyTypeComesBackAsItself) {
  const std::vector<DefaultsObject> objects{true, std::int64_t{1}, 1.0, std::string("1"),
                                            Bytes{std::byte{1}, std::byte{0}, std::byte{255}}};
  for (const DefaultsObject& object : objects) {
    this->defaults().setObject("key", object);
    EXPECT_EQ(this->defaults().objectForKey("key"), object);
  }
}

TYPED_TEST(UserDefaultsContract, anIntegerIsNeitherABooleanNorADouble) {
  this->defaults().setObject("key", std::int64_t{1});
  EXPECT_FALSE(this->defaults().boolForKey("key"));
  EXPECT_FALSE(this->defaults().template object<double>("key").has_value());
  EXPECT_EQ(this->defaults().template object<std::int64_t>("key"), 1);
}

TYPED_TEST(UserDefaultsContract, stringsKeepAnyBytes) {
  const std::string name("caf\xE9/\n\"\xF0\x9F\x93\xB7");
  this->defaults().setObject("key", name);
  EXPECT_EQ(this->defaults().template object<std::string>("key"), name);
}

TYPED_TEST(UserDefaultsContract, whatIsRemovedIsGoneAndRemovingNothingIsNoError) {
  this->defaults().setObject("key", true);
  this->defaults().removeObjectForKey("key");
  this->defaults().removeObjectForKey("key");
  EXPECT_FALSE(this->defaults().objectForKey("key").has_value());
  EXPECT_TRUE(this->defaults().dictionaryRepresentation().empty());
}

TYPED_TEST(UserDefaultsContract, theDictionaryHoldsEveryKey) {
  this->defaults().setObject("a", true);
  this->defaults().setObject("b", 2.5);
  const std::map<std::string, DefaultsObject> expected{{"a", true}, {"b", 2.5}};
  EXPECT_EQ(this->defaults().dictionaryRepresentation(), expected);
}

TYPED_TEST(UserDefaultsContract, aSuiteIsAStoreOfItsOwnAndTheSameOneForItsName) {
  UserDefaults* suite = this->stores.stores.initWithSuiteName("other");
  ASSERT_NE(suite, nullptr);
  suite->setObject("key", true);
  EXPECT_FALSE(this->defaults().objectForKey("key").has_value());
  EXPECT_EQ(this->stores.stores.initWithSuiteName("other"), suite);
}

}  // namespace
}  // namespace quenlio
