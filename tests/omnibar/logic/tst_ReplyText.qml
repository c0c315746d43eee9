// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

import QtQuick 2.15
import QtTest 1.15

import "qrc:/org/kde/loomra/contents/ui/omnibar/logic/ReplyText.js" as ReplyText

TestCase {
    name: "ReplyText"

    function test_holdsToolMarkup_data() {
        return [
            { tag: "<invoke ", held: true },
            { tag: "<tool_call", held: true },
            { tag: "</tool_call>", held: true },
            { tag: "</function>", held: true },
            { tag: "minimax:tool_call", held: true },
            { tag: "<function_call>", held: true },
            { tag: "<function=", held: true },
            { tag: "", held: false },
            { tag: "I will invoke a tool call by its function = name", held: false },
            { tag: "<invoke>", held: false },
            { tag: "<function>", held: false },
            { tag: "<FUNCTION=", held: false }
        ];
    }
    function test_holdsToolMarkup(row) {
        compare(ReplyText.holdsToolMarkup(row.tag), row.held);
        compare(ReplyText.holdsToolMarkup("before " + row.tag + " after"), row.held);
    }

    function test_stripToolMarkup_data() {
        return [
            { tag: "plain text is untouched", text: "  a\n\n\n\n<b>b ", plain: "  a\n\n\n\n<b>b " },
            { tag: "wrapper", text: "a <minimax:tool_call>b</minimax:tool_call> c", plain: "a b c" },
            { tag: "wrapper with attributes", text: "a <minimax:tool_call id=\"1\">b", plain: "a b" },
            { tag: "invoke", text: "a<invoke name=\"x\"><parameter name=\"y\">1</parameter></invoke>b", plain: "ab" },
            { tag: "invoke over lines", text: "a\n<invoke name='x'>\n1\n</invoke>\nb", plain: "a\n\nb" },
            { tag: "invoke without a name keeps its content", text: "a<invoke id=\"1\">b</invoke>c", plain: "abc" },
            { tag: "a name of another word is none", text: "a<invoke surname=\"1\">b</invoke>c", plain: "abc" },
            { tag: "two invokes", text: "a<invoke name=\"x\">1</invoke>b<invoke name=\"y\">2</invoke>c", plain: "abc" },
            { tag: "invoke that is never closed", text: "a<invoke name=\"x\">b", plain: "ab" },
            { tag: "invoke that closes itself", text: "a<invoke name=\"x\"/>b<invoke name=\"y\">c</invoke>d", plain: "abd" },
            { tag: "tool_call", text: "a<tool_call>{\"b\": 1}</tool_call>c", plain: "ac" },
            { tag: "tool_call with attributes", text: "a<tool_call id=\"1\">b</tool_call>c", plain: "ac" },
            { tag: "another name that begins so", text: "a<tool_calls>b</tool_calls>c", plain: "a<tool_calls>b</tool_calls>c" },
            { tag: "function_call", text: "a<function_call>b</function_call>c", plain: "ac" },
            { tag: "function=", text: "a<function=x><parameter=y>b</parameter></function>c", plain: "ac" },
            { tag: "single tags, any case", text: "a<TOOL_CALL>b</Tool_Call>c<Function_Call x=\"1\">d</function>e<Parameter>f<invoke >g",
              plain: "abcdefg" },
            { tag: "end tag without start tag", text: "a</tool_call>b", plain: "ab" },
            { tag: "end tag with a space", text: "a<tool_call>b</tool_call >c", plain: "ac" },
            { tag: "a tag without an end stays", text: "a <tool_call b", plain: "a <tool_call b" },
            { tag: "three newlines become two", text: "a\n\n\nb<tool_call>c</tool_call>\n\n\n\n\nd", plain: "a\n\nb\n\nd" },
            { tag: "trimmed", text: "\n a <tool_call>b</tool_call> \n", plain: "a" },
            { tag: "nothing but markup", text: "<tool_call>{\"name\": \"x\"}</tool_call>", plain: "Done." },
            { tag: "nothing but markup of all kinds",
              text: "<minimax:tool_call>\n<invoke name=\"x\">1</invoke>\n</minimax:tool_call>\n<function=y>2</function>",
              plain: "Done." }
        ];
    }
    function test_stripToolMarkup(row) {
        compare(ReplyText.stripToolMarkup(row.text), row.plain);
    }

    function test_parseToolTag_data() {
        return [
            { tag: "whole", text: "[TOOL: kde.notify] [STATUS: success] [RESULT: ok] It is done.", tool: "kde.notify",
              status: "success", rest: "It is done." },
            { tag: "no rest", text: "[TOOL: x] [STATUS: success] [RESULT: ok]", tool: "x", status: "success",
              rest: "Action completed." },
            { tag: "rest of whitespace", text: "[TOOL: x] [STATUS: error] [RESULT: ok] \n ", tool: "x", status: "error",
              rest: "Action completed." },
            { tag: "text before is lost", text: "Let me see. [TOOL: x] [STATUS: failed] [RESULT: no] Sorry.", tool: "x",
              status: "failed", rest: "Sorry." },
            { tag: "no whitespace", text: "[TOOL:x][STATUS:success][RESULT:ok]Fine", tool: "x", status: "success", rest: "Fine" },
            { tag: "much whitespace", text: "[TOOL:  x ]\n[STATUS:\tsuccess ]  [RESULT: ]\nFine\nand more", tool: "x",
              status: "success", rest: "Fine\nand more" },
            { tag: "values of several words", text: "[TOOL: a b] [STATUS: c: d] [RESULT: [e] f", tool: "a b",
              status: "c: d", rest: "f" },
            { tag: "a broken tag before a whole one", text: "[TOOL: a] [STATUS: b] and [TOOL: c] [STATUS: d] [RESULT: e] f",
              tool: "c", status: "d", rest: "f" },
            { tag: "a whole tag within a broken one", text: "[TOOL: a] [STATUS: [TOOL: c] [STATUS: d] [RESULT: e] f",
              tool: "c", status: "d", rest: "f" },
            { tag: "a second tag is rest", text: "[TOOL: a] [STATUS: b] [RESULT: c] [TOOL: d] [STATUS: e] [RESULT: f] g",
              tool: "a", status: "b", rest: "[TOOL: d] [STATUS: e] [RESULT: f] g" }
        ];
    }
    function test_parseToolTag(row) {
        const parsed = ReplyText.parseToolTag(row.text);
        compare(parsed.hasTool, true);
        compare(parsed.toolName, row.tool);
        compare(parsed.toolStatus, row.status);
        compare(parsed.text, row.rest);
    }

    function test_noToolTag_data() {
        return [
            { tag: "" },
            { tag: " plain words " },
            { tag: "[TOOL: x] [STATUS: success]" },
            { tag: "[TOOL: x] [RESULT: ok] [STATUS: success]" },
            { tag: "[TOOL: x [STATUS: y [RESULT: z" },
            { tag: "[TOOL: x] then [STATUS: success] [RESULT: ok]" },
            { tag: "[tool: x] [status: success] [result: ok]" }
        ];
    }
    function test_noToolTag(row) {
        const parsed = ReplyText.parseToolTag(row.tag);
        compare(parsed.hasTool, false);
        compare(parsed.toolName, "");
        compare(parsed.toolStatus, "");
        compare(parsed.text, row.tag);
    }

    function test_lightChromeFromWording_data() {
        return [
            { tag: "Breeze Dark applied.", light: false },
            { tag: "Applied the DARK theme", light: false },
            { tag: "Breeze Light applied.", light: true },
            { tag: "Light replaced dark: applied", light: false },
            { tag: "A light snack, as applied to lunch", light: true },
            { tag: "The light theme is nice", light: undefined },
            { tag: "The dark theme is nice", light: undefined },
            { tag: "Applied.", light: undefined },
            { tag: "", light: undefined }
        ];
    }
    function test_lightChromeFromWording(row) {
        compare(ReplyText.lightChromeFromWording(row.tag), row.light);
    }

    // With quadratic complexity, a megabyte would take minutes.
    function test_hostileReplies_data() {
        return ["<", "<tool_call>", "<tool_call ", "<invoke name=\"x\">", "<invoke name=", "<invoke name= name", "</tool_call",
                "<function=", "<function=x>", "<minimax:tool_call ", "<parameter ", "\n", " ", "[TOOL:", "[TOOL:]", "[TOOL:] ",
                "\u0130", "[TOOL:a] [STATUS:b] ", "[TOOL:a] [STATUS:[TOOL:b] "]
            .map(text => ({ tag: JSON.stringify(text), text: text }));
    }
    function test_hostileReplies(row) {
        const reply = "<tool_call " + row.text.repeat(Math.ceil(1048576 / row.text.length));
        verify(ReplyText.stripToolMarkup(reply).length > 0);
        compare(ReplyText.parseToolTag(reply).hasTool, false);
        compare(ReplyText.parseToolTag("[TOOL:" + reply).hasTool, false);
        compare(ReplyText.lightChromeFromWording(reply), undefined);
    }
}
