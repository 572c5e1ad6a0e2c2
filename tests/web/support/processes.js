'use strict';

const { spawn } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const readline = require('node:readline');

const patience = 60000; // ms

/** Waits until the condition holds. */
async function until(what, condition) {
    const deadline = Date.now() + patience;
    while (!condition()) {
        if (Date.now() > deadline) {
            throw new Error(`In vain waited until ${what}`);
        }
        await new Promise((resolve) => setTimeout(resolve, 10));
    }
}

const cleanUps = new WeakMap();

/** Has this done at the end of the test or suite `context`, before what was asked for earlier. */
function atEnd(context, action) {
    if (!cleanUps.has(context)) {
        const actions = [];
        cleanUps.set(context, actions);
        context.after(async () => {
            while (actions.length > 0) {
                await actions.pop()();
            }
        });
    }
    cleanUps.get(context).push(action);
}

/** A folder of its own, removed at the end of the test or suite `context`. */
function tempFolder(context) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'quorvix-web-'));
    atEnd(context, () => fs.rmSync(folder, { recursive: true, force: true, maxRetries: 5 }));
    return folder;
}

/**
 * A program that runs until the end of the test or suite `context`. `lines` has what it writes to standard output and
 * standard error.
 */
class RunningProgram {
    constructor(context, program, args, options = {}) {
        this.lines = [];
        this.child = spawn(program, args, { ...options, stdio: ['pipe', 'pipe', 'pipe'] });
        this.hasEnded = false;
        this.end = new Promise((resolve) => this.child.once('close', resolve)).then(() => { this.hasEnded = true; });
        this.child.once('error', (error) => this.lines.push(String(error)));
        for (const stream of [this.child.stdout, this.child.stderr]) {
            readline.createInterface({ input: stream }).on('line', (line) => this.lines.push(line));
        }
        atEnd(context, () => this.stop());
    }

    /** The first line, from the one of this number on, that the regular expression matches, as its match. */
    async line(pattern, from = 0) {
        let next = from;
        let match = null;
        await until(`it wrote ${pattern}`, () => {
            while (!match && next < this.lines.length) {
                match = this.lines[next++].match(pattern);
            }
            if (!match && this.hasEnded) {
                throw new Error(`It ended before it wrote ${pattern}:\n${this.lines.join('\n')}`);
            }
            return match;
        });
        return match;
    }

    async stop() {
        this.child.kill('SIGKILL');
        await this.end;
    }
}

module.exports = { RunningProgram, atEnd, tempFolder, until };
