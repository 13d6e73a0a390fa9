#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// A field that is edited in place and saved when it is left. It shows what is stored until somebody types; what is
/// typed stays, whatever happens to the record meanwhile, and the field knows that something has.
class EditedText {
  public:
    const std::string& text() const { return m_typed ? *m_typed : m_stored; }
    const std::string& stored() const { return m_stored; }
    bool isEdited() const { return m_typed && *m_typed != m_stored; }
    /// Somebody else has stored another text than the one that is being edited.
    bool isChangedElsewhere() const { return m_typed && m_stored != m_base && *m_typed != m_stored; }
    /// What the field says of that; empty otherwise.
    std::string_view notice() const {
        return isChangedElsewhere() ? "Changed elsewhere meanwhile. Saving replaces that." : "";
    }

    /// What the record holds by now.
    void show(const std::string& stored) { m_stored = stored; }
    void type(std::string text) {
        if (!m_typed)
            m_base = m_stored;
        m_typed = std::move(text);
    }
    /// Takes what is stored.
    void revert() { m_typed.reset(); }

  private:
    std::string m_stored;
    std::string m_base; // what was stored when the editing began
    std::optional<std::string> m_typed;
};

} // namespace quillorn
