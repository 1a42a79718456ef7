#include <vorel/vector_num.h>

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

using namespace vorel;

namespace {

/// Tells its end.
class witness : public numerel::ref_counted {
public:
    explicit witness(bool& gone_) : gone(gone_) { gone = false; }
    ~witness() override { gone = true; }

private:
    bool& gone;
};

} // namespace

TEST(RefCounted, StartsWithoutHolder)
{
    bool gone = true;
    auto* const object = new witness(gone);
    EXPECT_EQ(object->count.load(), 0);
    EXPECT_EQ(sizeof(object->count), 4u);
    const Ptr<witness> holder(object);
    EXPECT_EQ(object->count.load(), 1);
    EXPECT_FALSE(gone);
}

TEST(RefCounted, DestroysThroughTheVirtualDestructor)
{
    bool gone = true;
    {
        const Ptr<numerel::ref_counted> base(new witness(gone));
        EXPECT_FALSE(gone);
    }
    EXPECT_TRUE(gone);
}

TEST(Ptr, IsOneWord)
{
    EXPECT_EQ(sizeof(Ptr<witness>), sizeof(void*));
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Ptr<witness>>);
}

TEST(Ptr, MayBeNull)
{
    Ptr<witness> none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.get(), nullptr);
    Ptr<witness> copy = none;
    copy = none;
    copy = nullptr;
    EXPECT_TRUE(copy == none);
}

TEST(Ptr, CopiesShareAndTheLastOneDestroys)
{
    bool gone = true;
    Ptr<witness> first(new witness(gone));
    {
        const Ptr<witness> second = first;
        EXPECT_EQ(first->count.load(), 2);
        EXPECT_TRUE(first == second);
        first = nullptr;
        EXPECT_FALSE(gone);
        EXPECT_EQ(second->count.load(), 1);
    }
    EXPECT_TRUE(gone);
}

TEST(Ptr, MoveTakesTheReferenceAlong)
{
    bool gone = true;
    Ptr<witness> first(new witness(gone));
    Ptr<witness> second(std::move(first));
    EXPECT_EQ(first.get(), nullptr);
    EXPECT_EQ(second->count.load(), 1);
    Ptr<witness> third;
    third = std::move(second);
    EXPECT_EQ(third->count.load(), 1);
    EXPECT_FALSE(gone);
    third = Ptr<witness>();
    EXPECT_TRUE(gone);
}

TEST(Ptr, AssignmentReleasesTheOldObject)
{
    bool first_gone = true;
    bool second_gone = true;
    Ptr<witness> p(new witness(first_gone));
    p = new witness(second_gone);
    EXPECT_TRUE(first_gone);
    EXPECT_FALSE(second_gone);
    bool third_gone = true;
    p = Ptr<witness>(new witness(third_gone));
    EXPECT_TRUE(second_gone);
    EXPECT_FALSE(third_gone);
}

TEST(Ptr, AssigningItsOwnObjectToTheOnlyHolderIsSafe)
{
    bool gone = true;
    Ptr<witness> p(new witness(gone));
    p = p.get();
    EXPECT_FALSE(gone);
    EXPECT_EQ(p->count.load(), 1);
    Ptr<witness>& same = p;
    p = same;
    EXPECT_FALSE(gone);
    p = std::move(same);
    EXPECT_FALSE(gone);
    EXPECT_EQ(p->count.load(), 1);
}

TEST(RefCounted, CountSurvivesThreads)
{
    bool gone = true;
    Ptr<witness> shared(new witness(gone));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([copy = shared] {
            for (int i = 0; i < 20000; ++i) const Ptr<witness> passing = copy;
        });
    for (std::thread& t : threads) t.join();
    threads.clear();
    EXPECT_EQ(shared->count.load(), 1);
    EXPECT_FALSE(gone);
    shared = nullptr;
    EXPECT_TRUE(gone);
}
