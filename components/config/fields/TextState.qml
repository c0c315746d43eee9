// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15

import "../ConfigObject.js" as ConfigObject
import "../FieldText.js" as FieldText

//! Keeps a text field in step with the value that it edits. The text of the user is not touched while they type, nor
//! while it is invalid.
QtObject {
    id: state

    required property Item field
    required property Item control

    readonly property var format: FieldText.formatOf(field.row)
    readonly property string shown: format.shown(field.value)
    //! A text field would be busy with such a value for seconds. Its start is shown, and can't be edited.
    readonly property bool isTooLong: shown.length > ConfigObject.longestText
    //! The control's text when it was last shown or applied. Not what was assigned: controls change some characters, such
    //! as line breaks of other systems, which the user has not edited.
    property string knownText
    readonly property bool isValid: isTooLong || format.parse(control.text).valid

    function reset() {
        const text = ConfigObject.shortened(shown, ConfigObject.longestText);
        if (control.text !== text)
            control.text = text;
        knownText = control.text;
    }

    //! Applies the text if the user has changed it.
    function apply() {
        if (isTooLong || control.text === knownText)
            return;
        const parsed = format.parse(control.text);
        if (!parsed.valid)
            return;
        knownText = control.text;
        field.edit(parsed.value);
    }

    function finish() {
        apply();
        if (isValid)
            reset();
    }

    onShownChanged: {
        if (!control.activeFocus && isValid)
            reset();
    }
    Component.onCompleted: reset()

    property Connections resets: Connections {
        target: state.field.form
        function onRevisionChanged() { state.reset(); }
    }
    property Connections edits: Connections {
        target: state.control
        function onTextChanged() {
            if (state.field.form.immediate && state.control.activeFocus)
                state.apply();
        }
        function onEditingFinished() { state.finish(); }
    }
}
