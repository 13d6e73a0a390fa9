import QtQuick
import QuillornStyle

/// Chooses a record by its name, or none.
ComboBox {
    id: root

    property var records: []
    property string chosen
    property string none: "None"

    signal picked(string record)

    model: [none].concat(records.map(record => record.name))
    currentIndex: records.findIndex(record => record.id === chosen) + 1
    onActivated: index => picked(index === 0 ? "" : records[index - 1].id)
}
