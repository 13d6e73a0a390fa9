#include "Views/TagDetailView.h"

#include "Models/DeletionQuestions.h"
#include "Models/TaskTotals.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/TagRequests.h"

namespace quillorn {

TagDetailView::TagDetailView(const ViewEnvironment& environment, SceneStorage& scene, const UUID& tag)
    : NamedDetailView(environment, tag),
      m_tag(environment.main, {.where = "id = ?", .values = {tag}}),
      m_tasks(environment, scene, {TaskFilter::Kind::tag, tag}) {
    follow(m_tag);
    show();
}

std::int64_t TagDetailView::taskCount() const {
    return TagCounts(context(), {tag()}).of(*tag());
}

void TagDetailView::show() {
    if (isGone())
        return;
    showNames(tag()->name(), "", tag()->color());
    setSubtitle(counted(static_cast<std::size_t>(taskCount()), "task"));
}

bool TagDetailView::write(Field field, const std::string& text) {
    UpdateTagRequest request;
    if (field == Field::name)
        request.name = text;
    return !refuse(request.faults()) && perform("Edit Tag", [&](ModelContext& records, Date now) {
        updateTag(records, findOrThrow<Tag>(records, id()), request, now);
    });
}

void TagDetailView::setColor(const std::string& color) {
    UpdateTagRequest request;
    request.color = color;
    if (!refuse(request.faults()))
        perform("Edit Tag", [&](ModelContext& records, Date now) {
            updateTag(records, findOrThrow<Tag>(records, id()), request, now);
        });
}

std::optional<Confirmation> TagDetailView::deletion() const {
    return isGone() ? std::nullopt : std::optional(deletionOfTag(*tag(), taskCount()));
}

void TagDetailView::remove() {
    if (!isGone())
        DetailView::remove(*tag());
}

} // namespace quillorn
