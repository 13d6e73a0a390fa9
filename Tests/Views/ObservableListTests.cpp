#include "Views/ObservableList.h"

#include "Support/Dice.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

struct Row {
    int id;
    int value = 0;
    friend bool operator==(const Row&, const Row&) = default;
};

using Rows = std::vector<Row>;
using StepKind = ListStep::Kind;

/// Does to a copy what the list tells, and counts what it takes.
struct Follower {
    explicit Follower(ObservableList<Row>& observed) : list(observed) {}

    void apply(const ListStep& step, ObservableList<Row>::Moment moment) {
        const auto at = [this](std::size_t place) { return copy.begin() + static_cast<std::ptrdiff_t>(place); };
        if (moment == ObservableList<Row>::Moment::before) {
            EXPECT_EQ(list.rows(), copy);
            return;
        }
        steps.push_back(step);
        const auto rows = list.rows().begin() + static_cast<std::ptrdiff_t>(step.first);
        if (step.kind == StepKind::inserted)
            copy.insert(at(step.first), rows, rows + static_cast<std::ptrdiff_t>(step.count));
        else if (step.kind == StepKind::removed)
            copy.erase(at(step.first), at(step.first + step.count));
        else if (step.kind == StepKind::changed)
            std::copy_n(rows, step.count, at(step.first));
        else {
            const Row moved = copy[step.first];
            copy.erase(at(step.first));
            copy.insert(at(step.target), moved);
        }
        EXPECT_EQ(list.rows(), copy);
    }

    ObservableList<Row>& list;
    Rows copy{};
    std::vector<ListStep> steps{};
    Observation observation = list.observe([this](const auto& step, auto moment) { apply(step, moment); });
};

TEST(ObservableListSteps, areAsFewAsTheChange) {
    const struct {
        Rows before, after;
        std::vector<ListStep> steps;
    } cases[] = {
        {{{1}, {2}, {3}}, {{1}, {2}, {3}}, {}},
        {{{1}, {2}, {3}, {4}}, {{2}, {3}, {4}, {1}}, {{StepKind::moved, 0, 1, 3}}},
        {{{1}, {2}, {3}, {4}}, {{4}, {1}, {2}, {3}}, {{StepKind::moved, 3, 1, 0}}},
        {{{1}, {2}, {3}}, {{1}, {2, 5}, {3, 5}}, {{StepKind::changed, 1, 2}}},
        {{{1}, {2}, {3}, {4}}, {{1}, {4}}, {{StepKind::removed, 1, 2}}},
        {{}, {{1}, {2}}, {{StepKind::inserted, 0, 2}}},
        {{{1}, {2}}, {{1}, {3}, {2, 7}}, {{StepKind::inserted, 1, 1}, {StepKind::changed, 2, 1}}},
    };
    for (const auto& [before, after, steps] : cases) {
        ObservableList<Row> list;
        list.assign(before);
        Follower follower(list);
        follower.copy = before;
        list.assign(after);
        EXPECT_EQ(list.rows(), after);
        EXPECT_EQ(follower.steps, steps);
    }
}

TEST(ObservableListSteps, leadFromAnyListToAnyOther) {
    Dice dice(7);
    ObservableList<Row> list;
    Follower follower(list);
    for (int round = 0; round < 400; ++round) {
        Rows next = list.rows();
        const std::size_t spread = round % 20 == 0 ? 2000 : 12;
        std::erase_if(next, [&](const Row&) { return dice.below(8) == 0; });
        for (std::size_t count = dice.below(spread); count > 0; --count) {
            const int id = static_cast<int>(dice.below(100000));
            const auto same = std::ranges::find(next, id, &Row::id);
            const auto place = next.begin() + static_cast<std::ptrdiff_t>(dice.below(next.size() + 1));
            if (same == next.end())
                next.insert(place, Row{id});
            else
                same->value = round;
        }
        for (std::size_t count = next.empty() ? 0 : dice.below(spread); count > 0; --count)
            std::swap(next[dice.below(next.size())], next[dice.below(next.size())]);
        follower.steps.clear();
        list.assign(next);
        ASSERT_EQ(list.rows(), next);
        ASSERT_EQ(follower.copy, next);
        ASSERT_LE(follower.steps.size(), 600U);
    }
}

} // namespace
} // namespace quillorn
