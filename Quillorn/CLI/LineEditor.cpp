#include "CLI/LineEditor.h"

#include <clocale>
#include <cstdio>
#include <histedit.h>
#include <stdexcept>
#include <termios.h>
#include <unistd.h>

namespace quillorn {

struct LineEditor::State {
    explicit State(std::string words) : prompt(std::move(words)) { ::tcgetattr(STDIN_FILENO, &terminal); }
    ~State() {
        if (editor != nullptr)
            el_end(editor);
        if (history != nullptr)
            history_end(history);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    static char* promptOf(EditLine* editor) {
        State* state = nullptr;
        el_get(editor, EL_CLIENTDATA, &state);
        return state->prompt.data();
    }

    std::string prompt;
    termios terminal{};
    EditLine* editor = nullptr;
    History* history = history_init();
    HistEvent event{};
};

LineEditor::LineEditor(std::string prompt) : m_state(std::make_unique<State>(std::move(prompt))) {
    // The library reads characters by the locale of the process.
    (void)std::setlocale(LC_CTYPE, ""); // NOLINT(concurrency-mt-unsafe): nobody else reads it
    State& state = *m_state;
    state.editor = el_init("quillorn", stdin, stdout, stderr);
    if (state.editor == nullptr || state.history == nullptr)
        throw std::runtime_error("can't edit lines on this terminal");
    constexpr int remembered = 1'000;
    history(state.history, &state.event, H_SETSIZE, remembered);
    el_set(state.editor, EL_CLIENTDATA, &state);
    el_set(state.editor, EL_PROMPT, &State::promptOf);
    el_set(state.editor, EL_EDITOR, "emacs");
    el_set(state.editor, EL_HIST, &::history, state.history);
    // Ctrl-C is a key while a line is typed, and a signal while an answer comes.
    el_set(state.editor, EL_SETTY, "-d", "-isig", nullptr);
    el_set(state.editor, EL_BIND, "^C", "em-kill-line", nullptr);
}

LineEditor::~LineEditor() = default;

std::optional<std::string> LineEditor::read() {
    int length = 0;
    const char* typed = el_gets(m_state->editor, &length);
    if (typed == nullptr || length <= 0)
        return std::nullopt;
    std::string line(typed, static_cast<std::size_t>(length));
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.pop_back();
    if (!line.empty())
        history(m_state->history, &m_state->event, H_ENTER, line.c_str());
    return line;
}

void LineEditor::restoreTerminal() const {
    ::tcsetattr(STDIN_FILENO, TCSANOW, &m_state->terminal);
}

} // namespace quillorn
