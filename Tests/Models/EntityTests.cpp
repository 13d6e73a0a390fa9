#include "Models/ChatMessage.h"
#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Store/ModelContext.h"
#include "Support/TestStore.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

TEST(Entities, smoke) {
    TestStore store;
    ModelContext context(*store.container);
    const Date now{std::chrono::seconds(1000)};
    auto& client = context.insert<Client>(Client::Arguments{.name = "Acme"}, now);
    auto& project = context.insert<Project>(Project::Arguments{.name = "Site"}, now);
    project.setClient(&client);
    auto& task = context.insert<ProjectTask>(ProjectTask::Arguments{.title = "Do", .project = &project}, now);
    auto& tag = context.insert<Tag>(Tag::Arguments{.name = "t"}, now);
    task.setTags({&tag});
    context.save();
    ModelContext other(*store.container);
    auto* found = other.find<ProjectTask>(task.id());
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->project()->client()->name(), "Acme");
    EXPECT_EQ(found->tags().size(), 1U);
    EXPECT_EQ((*found->tags().begin())->tasks().size(), 1U);
}

} // namespace
} // namespace quillorn
