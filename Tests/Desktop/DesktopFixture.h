#pragma once

#include "Desktop/Shell.h"
#include "Records/Edits.h"
#include "Records/TaskRequests.h"
#include "Support/RecordingLog.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStringList>
#include <QTest>
#include <gtest/gtest.h>
#include <optional>

namespace quillorn {

/// What the toolkit complained of since the test began.
inline QStringList warnings;

/// The application in its window, offscreen, on a store in memory or on one of the sample's.
struct DesktopTest : testing::Test {
    DesktopTest() { warnings.clear(); }

    Shell& shell() {
        if (!m_shell)
            m_shell.emplace(ProcessInfo{.arguments = {demoArgument}, .environment = {}}, scheme, log);
        return *m_shell;
    }
    DesktopApp& desk() { return *shell().desk(); }
    ModelContext& context() { return shell().world().app().mainContext(); }
    Date now() { return shell().world().clock().now(); }

    ProjectTask& addTask(const char* title) {
        ProjectTask& task = createTask(context(), {{}, title}, now());
        shell().world().app().mainStore().save();
        return task;
    }
    /// The first item of the window that shows the text, or has it as its tip.
    QQuickItem* itemWith(const QString& text, QQuickItem* root = nullptr) {
        if (root == nullptr)
            root = shell().window().contentItem();
        if (root->isVisible() && (root->property("text") == text || root->property("tip") == text))
            return root;
        for (QQuickItem* child : root->childItems())
            if (QQuickItem* found = child->isVisible() ? itemWith(text, child) : nullptr)
                return found;
        return nullptr;
    }
    QPoint middle(const QString& text) {
        QQuickItem* item = itemWith(text);
        EXPECT_NE(item, nullptr) << text.toStdString();
        return item != nullptr ? item->mapToScene({qMin(item->width() / 2, 20.), item->height() / 2}).toPoint()
                               : QPoint();
    }
    void click(const QString& text) { QTest::mouseClick(&shell().window(), Qt::LeftButton, {}, middle(text)); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&shell().window(), key, modifiers);
    }
    void drag(const QString& from, QPoint to) {
        const QPoint start = middle(from);
        QTest::mousePress(&shell().window(), Qt::LeftButton, {}, start);
        for (int step = 1; step <= 8; ++step)
            QTest::mouseMove(&shell().window(), start + (to - start) * step / 8);
        QTest::mouseRelease(&shell().window(), Qt::LeftButton, {}, to);
        QCoreApplication::processEvents();
    }

    Appearance::Scheme scheme = Appearance::Scheme::light;
    RecordingLog log;
    std::optional<Shell> m_shell;
};

} // namespace quillorn
