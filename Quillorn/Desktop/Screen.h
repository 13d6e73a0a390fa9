#pragma once

#include "Desktop/Variants.h"

#include <QObject>
#include <exception>

namespace quillorn {

/// What a screen reads and calls: a thin skin over a view model, with one signal for all of its properties.
class Screen : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

  Q_SIGNALS:
    void changed();
    /// Something that the user asked for could not be done.
    void failed(const QString& words);

  protected:
    /// Runs what may throw; says what went wrong, and shows again what stands.
    template <typename Work>
    void attempt(const Work& work) {
        try {
            work();
        } catch (const std::exception& error) {
            Q_EMIT failed(toQString(error.what()));
            Q_EMIT changed();
        }
    }
    /// For the observers of view models.
    auto telling() {
        return [this] { Q_EMIT changed(); };
    }
};

} // namespace quillorn
