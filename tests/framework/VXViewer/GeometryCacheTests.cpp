#include "render/GeometryCache.h"

#include <gtest/gtest.h>

namespace VX
{

namespace
{

struct Made
{
    explicit Made(const int& source)
        : value(source)
    {
        ++count;
    }

    ~Made() { --count; }

    int value;
    static inline int count = 0;
};

} // namespace

TEST(GeometryCacheTests, MakesEachOnceAndSharesIt)
{
    GeometryCache<int, Made> cache;
    const auto source = std::make_shared<const int>(7);
    Made& first = cache.get(source);
    EXPECT_EQ(&cache.get(source), &first);
    EXPECT_EQ(first.value, 7);
    EXPECT_EQ(cache.find(source), &first);
}

TEST(GeometryCacheTests, FreesWhatBelongsToGeometryThatIsGone)
{
    GeometryCache<int, Made> cache;
    const auto kept = std::make_shared<const int>(1);
    auto dropped = std::make_shared<const int>(2);
    cache.get(kept);
    cache.get(dropped);
    EXPECT_EQ(Made::count, 2);
    const std::weak_ptr<const int> weak = dropped;
    dropped.reset();
    EXPECT_EQ(cache.find(weak), nullptr);
    cache.collect();
    EXPECT_EQ(Made::count, 1);
    EXPECT_EQ(cache.get(kept).value, 1);
}

TEST(GeometryCacheTests, NeverTakesOldGeometryForNewAtTheSameAddress)
{
    GeometryCache<int, Made> cache;
    int storage = 3;
    const auto unowned = [](const int*) {};
    auto old = std::shared_ptr<const int>(&storage, unowned);
    cache.get(old);
    old.reset();
    storage = 4;
    const auto fresh = std::shared_ptr<const int>(&storage, unowned);
    EXPECT_EQ(cache.find(fresh), nullptr);
    EXPECT_EQ(cache.get(fresh).value, 4);
}

} // namespace VX
