// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

// For tst_QmlValues: evaluates to an object with three functions.
({
    //! What QML may pass, on purpose or by mistake. Texts that may become paths are relative. Two
    //! values are missing because Qt's own conversion of them doesn't end: a list that contains itself as a text, and a
    //! model index as a JSON object.
    values(anObject) {
        const cyclic = { name: "cyclic" };
        cyclic.self = cyclic;
        let deep = {};
        for (let i = 0; i < 200; ++i)
            deep = { inner: [deep] };
        return [
            null, undefined, true, false,

            0, -0, 1, -1, 0.5, NaN, Infinity, -Infinity, 127, 2147483647, 2147483648, -2147483648, -2147483649,
            4294967297, 9007199254740993, 1e300, -1e300, 5e-324,

            "", " ", "x", "-1", "1e9", "NaN", "true", "null", "%1 %2", "{\"id\":1}", "[", "<img src='x'>",
            "a\u0000b", "\ud800", "x\udc00y", "\u202e\ufeff", "x".repeat(100000), "ü".repeat(3000),

            [], [null], [undefined, NaN, Infinity], ["a", 1, {}], [[[]]], new Array(3),

            {}, { id: "a", x: 1 }, { id: NaN, "": undefined, "\ud800": Infinity }, { f() {} }, { length: -1 }, cyclic,
            deep, Object.create(null),

            () => 1, anObject, new Date(0), new Date(NaN), new Error("an error"), Symbol("a symbol"),
            new ArrayBuffer(8), new Map([[1, 2]]), Qt.point(1, 2), Qt.rect(NaN, 0, -1, 1e300), Qt.rgba(1, 0, 0, 1),

            { get id() { throw new TypeError("a getter"); } },
            { toString() { throw new TypeError("a conversion"); } },
            { toString() { return {}; }, valueOf() { return {}; } }
        ];
    },

    //! Calls a function of a native object. Returns the exception as text; empty if there was none.
    call(object, name, parameters) {
        try {
            object[name](...parameters);
            return "";
        } catch (error) {
            return String(error);
        }
    },

    //! The same for a property.
    write(object, name, value) {
        try {
            object[name] = value;
            return "";
        } catch (error) {
            return String(error);
        }
    }
})
