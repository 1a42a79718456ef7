#include "curvature/generation_marks.h"

#include "support/allocation.h"

#include <gtest/gtest.h>

using vorel::tessalo2d::generation_marks;

TEST(GenerationMarks, HoldWhatWasInsertedInThisGenerationOnly)
{
    generation_marks marks;
    ASSERT_TRUE(marks.init(4));
    marks.start();
    EXPECT_EQ(marks.generation, 1u);
    for (unsigned e = 0; e < 4; ++e) EXPECT_FALSE(marks.holds(e)) << e;
    marks.insert(2);
    EXPECT_TRUE(marks.holds(2));
    EXPECT_FALSE(marks.holds(1));
    marks.start();
    EXPECT_EQ(marks.generation, 2u);
    EXPECT_FALSE(marks.holds(2));
}

TEST(GenerationMarks, ClearTheirTagsWhenTheGenerationsRunOut)
{
    generation_marks marks;
    ASSERT_TRUE(marks.init(2));
    marks.tags[0] = 1;
    marks.generation = 0xFFFFFFFEu;
    marks.start();
    EXPECT_EQ(marks.generation, 0xFFFFFFFFu);
    marks.insert(1);
    marks.start();
    EXPECT_EQ(marks.generation, 1u);
    EXPECT_FALSE(marks.holds(0)) << "a tag of a former first generation";
    EXPECT_FALSE(marks.holds(1));
}

TEST(GenerationMarks, TheIncrementCountsForOneGeneration)
{
    generation_marks marks;
    ASSERT_TRUE(marks.init(1));
    marks.increment = 5;
    marks.start();
    EXPECT_EQ(marks.generation, 5u);
    EXPECT_EQ(marks.increment, 1u);
    marks.start();
    EXPECT_EQ(marks.generation, 6u);
}

TEST(GenerationMarks, ReportRefusedStorage)
{
    generation_marks marks;
    support::failing_allocation armed(0);
    EXPECT_FALSE(marks.init(10));
}
