import QtQuick
import QtQuick.Layouts
import QuillornStyle

/// Makes or changes a client, a project, a task, a note or a tag.
Sheet {
    id: root

    property QtObject form
    property var priorities: []

    signal saved(string record)

    title: form?.windowTitle ?? ""
    canSave: form?.canSave ?? false
    problem: form?.problem ?? ""
    onOpened: name.forceActiveFocus()
    onSave: {
        const record = form.save();
        if (record) {
            accept();
            saved(record);
        }
    }

    TextField {
        id: name

        Layout.fillWidth: true
        placeholderText: root.form?.namePrompt ?? ""
        text: root.form?.values.name ?? ""
        onTextEdited: root.form.set("name", text)
        onAccepted: if (root.canSave)
            root.save()
    }
    TextArea {
        Layout.fillWidth: true
        Layout.minimumHeight: 72
        visible: root.form?.values.description !== undefined
        placeholderText: root.form?.textPrompt ?? ""
        text: root.form?.values.description ?? ""
        onTextChanged: if (activeFocus)
            root.form.set("description", text)
    }
    FormRow {
        label: "Client"
        visible: root.form?.kind === "project"

        RecordCombo {
            Layout.fillWidth: true
            records: root.form?.clients ?? []
            chosen: root.form?.values.client ?? ""
            onPicked: record => root.form.set("client", record)
            Accessible.name: "Client"
        }
    }
    FormRow {
        label: "Project"
        visible: root.form?.values.project !== undefined || root.form?.kind === "task" || root.form?.kind === "note"

        RecordCombo {
            Layout.fillWidth: true
            records: root.form?.projects ?? []
            chosen: root.form?.values.project ?? ""
            onPicked: record => root.form.set("project", record)
            Accessible.name: "Project"
        }
    }
    FormRow {
        label: "Due"
        visible: root.form?.kind === "task"
        help: "“tomorrow 9:00”, “friday”, “2026-12-24”"

        TextField {
            Layout.fillWidth: true
            placeholderText: "None"
            onEditingFinished: isWrong = !root.form.setDue(text)
            Accessible.name: "Due"
        }
    }
    FormRow {
        label: "Priority"
        visible: root.form?.kind === "task"

        ComboBox {
            model: root.priorities
            currentIndex: root.form?.values.priority ?? -1
            onActivated: index => root.form.set("priority", index)
            Accessible.name: "Priority"
        }
    }
    FormRow {
        label: "Tags"
        visible: root.form?.kind === "task" && (root.form?.tags ?? []).length > 0

        Flow {
            Layout.fillWidth: true
            spacing: 6

            LayoutRepeater {
                model: root.form?.tags ?? []

                Chip {
                    required property var modelData
                    readonly property bool isOn: (root.form?.values.tags ?? []).includes(modelData.id)

                    text: "#" + modelData.name
                    tone: isOn ? Theme.accent : Theme.secondaryText
                    symbol: isOn ? "checkmark" : ""
                    Accessible.checkable: true
                    Accessible.checked: isOn
                    onClicked: root.form.toggleTag(modelData.id)
                }
            }
        }
    }
    FormRow {
        label: "Color"
        visible: root.form?.values.color !== undefined

        Flow {
            Layout.fillWidth: true
            spacing: 8

            LayoutRepeater {
                model: root.form?.colors ?? []

                AbstractChip {
                    id: swatch

                    required property var modelData
                    readonly property bool isOn: (root.form?.values.color ?? "").toUpperCase() === modelData.value.toUpperCase()

                    implicitWidth: 24
                    implicitHeight: 24
                    Accessible.name: modelData.name
                    Accessible.checkable: true
                    Accessible.checked: isOn
                    onClicked: root.form.set("color", modelData.value)
                    contentItem: Item {
                        SymbolIcon {
                            anchors.centerIn: parent
                            name: swatch.isOn ? "checkmark.circle.fill" : "circle.fill"
                            color: swatch.modelData.value
                            size: 22
                        }
                    }
                    background: FocusFrame {}
                }
            }
        }
    }
}
