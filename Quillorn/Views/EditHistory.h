#pragma once

#include "Platform/Date.h"
#include "Platform/Observers.h"
#include "Store/RecordedEdit.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace quillorn {

class Clock;
class MainContext;
class TimerService;

/// What was edited in windows, step by step, and the way back: completion, status, fields, dates, moves, order, tags.
/// Every view model changes records through it, deletions excepted: those are asked about, and can't be undone. Belongs
/// to the main thread.
class EditHistory {
  public:
    /// Beyond that the oldest are forgotten.
    static constexpr std::size_t mostSteps = 200;

    using Edit = std::function<void(ModelContext& context, Date now)>;

    EditHistory(MainContext& main, TimerService& timer, const Clock& clock);

    /// Runs `edit` on the main context and saves. `name` is what menus and messages call it, as "Complete Task". An
    /// edit that changes nothing is no step; one that throws leaves the records as they were.
    void perform(std::string name, const Edit& edit);

    bool canUndo() const { return !m_done.empty(); }
    bool canRedo() const { return !m_undone.empty(); }
    /// "Undo Complete Task", or "Undo" alone when there is nothing.
    std::string undoTitle() const;
    std::string redoTitle() const;
    /// Takes the last step back, or does the one that was taken back last again. One that meets what was changed
    /// elsewhere meanwhile is given up, and refusal() says why: nothing is overwritten.
    bool undo();
    bool redo();
    /// Why the last step was not taken; empty when it was.
    const std::string& refusal() const { return m_refusal; }

    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

  private:
    struct Step {
        std::string name;
        RecordedEdit edit;
    };

    bool take(std::vector<Step>& from, std::vector<Step>& to, RecordedEdit::Way way);

    MainContext& m_main;
    TimerService& m_timer;
    const Clock& m_clock;
    std::vector<Step> m_done;
    std::vector<Step> m_undone;
    std::string m_refusal;
    Observers<> m_observers;
};

} // namespace quillorn
