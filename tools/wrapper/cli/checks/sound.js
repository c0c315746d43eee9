// SPDX-FileCopyrightText: 2026 The tovictl developers
// SPDX-License-Identifier: GPL-2.0-or-later

'use strict';

// Microphone, speakers, speech recognition and spoken replies. The paths are those that the program searches.

const fs = require('fs');
const path = require('path');

const { findProgram, isExecutableFile } = require('../programs');
const { missing, ok, problem } = require('./outcomes');

const NO_SERVER = ['the sound server does not answer', 'Start PulseAudio, or PipeWire with pipewire-pulse'];
const NO_PACTL = ['pactl is not installed, so sound cannot be checked', 'sudo apt install pulseaudio-utils'];

const isFile = (file) => fs.statSync(file, { throwIfNoEntry: false })?.isFile() ?? false;
const isFolder = (folder) => fs.statSync(folder, { throwIfNoEntry: false })?.isDirectory() ?? false;

function entries(folder) {
    try {
        return fs.readdirSync(folder).sort();
    } catch {
        return [];
    }
}

//! The names of the sources or sinks, and the default one; null if the server doesn't answer.
async function devices({ run }, kind) {
    const [list, standard] = await Promise.all([
        run('pactl', ['list', 'short', `${kind}s`]),
        run('pactl', [`get-default-${kind}`]),
    ]);
    if (list.code !== 0)
        return null;
    return {
        names: list.output.split('\n').map((line) => line.split('\t')[1]).filter(Boolean),
        standard: standard.code === 0 ? standard.output.trim() : '',
    };
}

async function checkMicrophone(context) {
    const { env } = context;
    if (!findProgram('pactl', env))
        return missing(...NO_PACTL);
    const found = await devices(context, 'source');
    if (!found)
        return problem(...NO_SERVER);
    const wanted = env.PULSE_SOURCE || found.standard;
    if (!found.names.length)
        return missing('the sound server has no source', 'Connect a microphone');
    if (env.PULSE_SOURCE && !found.names.includes(wanted))
        return problem(`PULSE_SOURCE names ${wanted}, which does not exist`, `Choose one of: ${found.names.join(', ')}`);
    if (wanted.endsWith('.monitor'))
        return problem(`${wanted} records what the machine plays`,
            'Connect a microphone and make it the default source, or name it in PULSE_SOURCE');
    return ok(wanted || found.names[0]);
}

async function checkOutput(context) {
    const { env } = context;
    if (!findProgram('pactl', env))
        return missing(...NO_PACTL);
    const found = await devices(context, 'sink');
    if (!found)
        return problem(...NO_SERVER);
    if (!found.names.length || found.standard === 'auto_null')
        return missing('the sound server has no output device', 'Connect speakers or headphones');
    if (!findProgram('paplay', env))
        return missing('paplay, which plays spoken replies, is not installed', 'sudo apt install pulseaudio-utils');
    return ok(env.PULSE_SINK || found.standard || found.names[0]);
}

const WHISPER_FILES = {
    'whisper-small-q5': 'ggml-small.en-q5_1.bin',
    'whisper-small': 'ggml-small.en.bin',
    whisper: 'ggml-base.en.bin',
};
const SHERPA = {
    moonshine: {
        program: 'bin/sherpa-onnx-offline',
        folder: 'sherpa-onnx-moonshine-tiny-en-quantized-2026-02-27',
        files: ['encoder_model.ort', 'decoder_model_merged.ort', 'tokens.txt'],
    },
    nemotron: {
        program: 'bin/sherpa-onnx',
        folder: 'sherpa-onnx-nemotron-speech-streaming-en-0.6b-560ms-int8-2026-04-25',
        files: ['encoder.int8.onnx', 'decoder.int8.onnx', 'joiner.int8.onnx', 'tokens.txt'],
    },
};
const SHERPA_INSTALLATIONS = ['experiments/sherpa-onnx-prebuilt-v1.12.28', 'experiments/sherpa-onnx/build'];

const modelFolders = ({ home, system }) => ({
    packaged: path.join(system, '/usr/share/tovi-forkeldaos/models'),
    user: path.join(home, '.local/share/tovi-forkeldaos/models'),
});

//! The engine that the settings name.
function chosenEngine({ home, env }) {
    try {
        const text = fs.readFileSync(path.join(env.XDG_CONFIG_HOME || path.join(home, '.config'),
            'kde.org/loomra-kde.conf'), 'utf8');
        const [, group = ''] = /^\[voice\]\n([^[]*)/m.exec(text) ?? [];
        const [, name] = /^sttBackend\s*=\s*"?([^"\n]*?)"?\s*$/m.exec(group) ?? [];
        if (name === undefined)
            return 'whisper-small-q5';
        const id = name.trim().toLowerCase();
        return Object.hasOwn(SHERPA, id) || Object.hasOwn(WHISPER_FILES, id) ? id : 'whisper';
    } catch {
        return 'whisper-small-q5';
    }
}

//! Whether the program was built with libwhisper.
function usesWhisper(program) {
    try {
        return fs.readFileSync(program).includes('libwhisper.so');
    } catch {
        return false;
    }
}

function checkWhisper({ home, system, program }, engine) {
    if (!usesWhisper(program))
        return missing('this build has no libwhisper',
            'Install libwhisper-dev and build again, or choose moonshine or nemotron');
    const { packaged, user } = modelFolders({ home, system });
    const name = WHISPER_FILES[engine];
    const folders = [packaged, user, path.join(home, 'experiments/whisper-voice-test/whisper.cpp/models')];
    const found = folders.map((folder) => path.join(folder, name)).find(isFile);
    return found ? ok(found) : missing(`the model ${name} is missing`, `Put this model of whisper.cpp into ${user}`);
}

function checkSherpa({ home, system }, engine) {
    const { program, folder, files } = SHERPA[engine];
    const root = SHERPA_INSTALLATIONS.map((each) => path.join(home, each))
        .find((each) => isExecutableFile(path.join(each, program)) && isFolder(path.join(each, 'lib')));
    if (!root)
        return missing(`${path.basename(program)} is missing`,
            `Unpack sherpa-onnx into ${path.join(home, SHERPA_INSTALLATIONS[0])}`);
    const { packaged, user } = modelFolders({ home, system });
    const model = [path.join(home, 'experiments/whisper-voice-test/models'), user, packaged]
        .map((each) => path.join(each, folder)).find(isFolder);
    if (!model)
        return missing(`the model ${folder} is missing`, `Put this folder into ${user}`);
    const absent = files.filter((file) => !isFile(path.join(model, file)));
    return absent.length ? problem(`${model} lacks ${absent.join(', ')}`, 'Unpack the model again') : ok(model);
}

const checkEngine = (context, engine) => (Object.hasOwn(SHERPA, engine) ? checkSherpa : checkWhisper)(context, engine);

//! The engine of the settings; others that would work are named.
function checkRecognition(context) {
    const chosen = chosenEngine(context);
    const { state, detail, help } = checkEngine(context, chosen);
    const others = [...Object.keys(WHISPER_FILES), ...Object.keys(SHERPA)]
        .filter((engine) => engine !== chosen && checkEngine(context, engine).state === 'ok');
    const also = others.length ? `; also usable: ${others.join(', ')}` : '';
    return { state, detail: `${chosen}: ${detail}${also}`, help };
}

function checkVoices({ home, system, env }) {
    const { packaged, user } = modelFolders({ home, system });
    const piper = [
        path.join(system, '/usr/bin/piper'), path.join(system, '/usr/local/bin/piper'), path.join(home, '.local/bin/piper'),
        path.join(home, 'piper/piper'), path.join(packaged, '../bin/piper'),
    ].find(isExecutableFile) ?? findProgram('piper', env);
    if (!piper)
        return missing('the speech synthesiser piper is missing',
            `Unpack its release archive, so that ${path.join(home, 'piper/piper')} exists`);
    // Debian's package "piper" is a script in Python, the synthesiser's release a binary.
    if (piper === path.join(system, '/usr/bin/piper') && fs.readFileSync(piper).subarray(0, 2).toString() === '#!')
        return problem(`${piper} is a mouse tool, and takes precedence over the speech synthesiser`,
            'sudo apt remove piper');

    const preferred = ['en_US-lessac-medium.onnx', 'en_US-amy-medium.onnx', 'en_US-ryan-medium.onnx'];
    const folders = [packaged, user, path.join(home, '.local/share/piper/voices'),
        path.join(system, '/usr/share/piper-voices'), path.join(home, 'piper/voices')];
    let voice = '';
    for (const folder of folders) {
        const names = [...preferred, ...entries(folder).filter((name) => /^en_.*\.onnx$/.test(name))];
        voice ||= names.map((name) => path.join(folder, name)).find(isFile) ?? '';
    }
    if (!voice)
        return missing(`${piper} has no English voice`, `Put a voice of 22050 Hz and its JSON file into ${user}`);
    let rate;
    try {
        rate = JSON.parse(fs.readFileSync(`${voice}.json`, 'utf8')).audio?.sample_rate;
    } catch {
        return problem(`the voice ${voice} has no readable JSON file`, `Put ${path.basename(voice)}.json beside it`);
    }
    if (rate !== 22050)
        return problem(`the voice ${voice} has ${rate} Hz and would be played at the wrong speed`,
            'Use a voice of 22050 Hz');
    return ok(`${path.basename(voice)}, ${piper}`);
}

module.exports = {
    checks: [
        { id: 'microphone', title: 'Microphone', run: checkMicrophone },
        { id: 'output', title: 'Sound output', run: checkOutput },
        { id: 'recognition', title: 'Speech engine', run: checkRecognition },
        { id: 'voices', title: 'Spoken replies', run: checkVoices },
    ],
};
