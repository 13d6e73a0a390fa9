#pragma once

#include "Platform/ReminderStore.h"

#include <algorithm>
#include <utility>

namespace quillorn {

/// Reminders that a test makes up. Not to be changed while somebody reads them.
class FakeReminders final : public ReminderStore {
  public:
    struct Item {
        Reminder reminder;
        bool isOpen = true;
        bool isRecurring = false;
    };

    /// A list's identifier is its title.
    void add(const std::string& list, const std::string& uid, const std::string& title,
             std::optional<Date> due = std::nullopt, const std::string& notes = "") {
        if (std::none_of(allLists.begin(), allLists.end(), [&](const auto& each) { return each.title == list; }))
            allLists.push_back({list, list});
        items.push_back({{uid, list + '/' + uid, title, notes, due, list}});
    }
    Item* find(const std::string& identifier) {
        const auto found = std::find_if(items.begin(), items.end(), [&](const Item& each) {
            return each.reminder.calendarItemIdentifier == identifier;
        });
        return found != items.end() ? &*found : nullptr;
    }

    bool requestFullAccess() override { return isGranted; }
    std::vector<ReminderList> lists() override {
        if (!isGranted)
            throw ReminderError("Can't read the folder of reminders: Permission denied");
        return allLists;
    }
    std::vector<Reminder> openReminders(std::span<const ReminderList> lists) override {
        ++reads;
        std::vector<Reminder> found;
        for (const ReminderList& list : lists)
            for (const Item& each : items)
                if (each.isOpen && each.reminder.listTitle == list.title)
                    found.push_back(each.reminder);
        return found;
    }
    std::optional<Reminder> reminder(const std::string& identifier) override {
        const Item* item = find(identifier);
        return item ? std::optional(item->reminder) : std::nullopt;
    }
    void complete(const std::string& identifier) override {
        Item* item = find(identifier);
        if (!canComplete || !item || item->isRecurring)
            throw ReminderError("It can't be completed");
        item->isOpen = false;
    }

    std::vector<ReminderList> allLists;
    std::vector<Item> items;
    bool isGranted = true;
    bool canComplete = true;
    int reads = 0;
};

} // namespace quillorn
