import QtQuick
import QtQuick.Templates as T

T.ScrollView {
    id: control

    readonly property QtObject follower: FollowFocus {
        view: control.contentItem
    }

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    clip: true

    ScrollBar.vertical: ScrollBar {
        parent: control
        x: control.mirrored ? 0 : control.width - width
        y: control.topPadding
        height: control.availableHeight
    }
    ScrollBar.horizontal: ScrollBar {
        policy: T.ScrollBar.AlwaysOff
    }
}
