import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Asks before something that can't be undone. `ask(question, then)` takes {title, text, action}.
Dialog {
    id: root

    property var question: ({})
    property var then: null
    property var otherwise: null

    function ask(newQuestion, newThen, newOtherwise) {
        question = newQuestion;
        then = newThen;
        otherwise = newOtherwise ?? null;
        open();
        cancel.forceActiveFocus(Qt.TabFocusReason);
    }

    width: 420
    title: question.title ?? ""
    onAccepted: if (then)
        then()
    onRejected: if (otherwise)
        otherwise()
    contentItem: Label {
        text: root.question.text ?? ""
        wrapMode: Text.Wrap
        color: Theme.secondaryText
    }
    footer: RowLayout {
        spacing: 8

        Item {
            Layout.fillWidth: true
            implicitHeight: 62
        }
        Button {
            id: cancel

            text: "Cancel"
            onClicked: root.reject()
        }
        Button {
            Layout.rightMargin: 20
            text: root.question.action ?? ""
            tone: Theme.red
            onClicked: root.accept()
        }
    }
}
