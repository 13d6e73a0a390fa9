#pragma once

#include <QString>

namespace quillorn {

/// What the desktop hands to those who may bring a window to the front, good for one time. Where a window comes there
/// by nothing else, the toolkit takes it from the environment when the window asks to be active.
class ActivationToken {
  public:
    /// Offers it as long as this object lives; an empty one leaves what is offered already.
    explicit ActivationToken(const QString& token) { offer(token); }
    ~ActivationToken() { qunsetenv(variable); }
    ActivationToken(const ActivationToken&) = delete;
    ActivationToken& operator=(const ActivationToken&) = delete;

    /// Offers it to the next window that asks.
    static void offer(const QString& token) {
        if (!token.isEmpty() && token.size() <= longest)
            qputenv(variable, token.toUtf8());
    }
    /// That with which this program was started, or empty. The toolkit takes it away when it begins.
    static QString ofStart() {
        const QString token = qEnvironmentVariable(variable);
        return token.isEmpty() ? qEnvironmentVariable("DESKTOP_STARTUP_ID") : token;
    }

  private:
    static constexpr auto variable = "XDG_ACTIVATION_TOKEN";
    static constexpr qsizetype longest = 1024;
};

} // namespace quillorn
