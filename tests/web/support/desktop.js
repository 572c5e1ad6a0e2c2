'use strict';

const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { RunningProgram, tempFolder } = require('./processes.js');

/** A user's desktop with folders of its own. */
class Desktop {
    constructor(context) {
        this.context = context;
        this.folder = tempFolder(context);
        this.handled = path.join(this.folder, 'handled');
        this.environment = { ...process.env };
        for (const [name, folder] of [['HOME', ''], ['XDG_CONFIG_HOME', 'config'], ['XDG_DATA_HOME', 'data'],
            ['XDG_STATE_HOME', 'state'], ['XDG_RUNTIME_DIR', 'run']]) {
            this.environment[name] = path.join(this.folder, folder);
            fs.mkdirSync(this.environment[name], { recursive: true, mode: 0o700 });
        }
        // Without a display xdg-open looks for browsers only; which one it is does not matter.
        this.environment.DISPLAY = ':0';
        for (const name of ['WAYLAND_DISPLAY', 'XDG_CURRENT_DESKTOP', 'DESKTOP_SESSION']) {
            delete this.environment[name];
        }
    }

    /** Has the program open sign-in links, through a script that notes its exit status. */
    registerProgram() {
        const program = path.join(process.env.QX_BUILD, 'bin/Quorvix');
        const script = path.join(this.folder, 'handler');
        fs.writeFileSync(script, `#!/bin/sh\ntimeout -s KILL 60 '${program}' "$@"\necho $? >>'${this.handled}'\n`,
            { mode: 0o755 });
        const register = path.join(__dirname, '../../../tools/register-deep-link');
        execFileSync(register, [script], { env: this.environment });
    }

    /** The exit statuses of the processes that the desktop has started for links. */
    handlerStatuses() {
        return fs.existsSync(this.handled) ? fs.readFileSync(this.handled, 'utf8').trim().split('\n') : [];
    }

    /** Has a script, which notes the pages that it is to open, be the desktop's browser. */
    registerBrowser() {
        this.opened = path.join(this.folder, 'opened');
        const script = path.join(this.folder, 'browser');
        fs.writeFileSync(script, `#!/bin/sh\nprintf '%s\\n' "$1" >>'${this.opened}'\n`, { mode: 0o755 });
        const applications = path.join(this.environment.XDG_DATA_HOME, 'applications');
        fs.mkdirSync(applications, { recursive: true });
        fs.writeFileSync(path.join(applications, 'browser.desktop'),
            `[Desktop Entry]\nType=Application\nName=Browser\nExec=${script} %u\n`);
        execFileSync('xdg-mime', ['default', 'browser.desktop', 'x-scheme-handler/http'], { env: this.environment });
    }

    /** What programs have had the browser open, in order. */
    openedPages() {
        return fs.existsSync(this.opened) ? fs.readFileSync(this.opened, 'utf8').trim().split('\n') : [];
    }

    /** Leaves nothing that greets a new user. */
    skipGreetings() {
        const folder = path.join(this.environment.XDG_CONFIG_HOME, 'Quorvix');
        fs.mkdirSync(folder, { recursive: true });
        fs.writeFileSync(path.join(folder, 'config.json'), JSON.stringify({
            telemetryDisclaimerModalShowed: 0, viewer: { launchCount: 1, QuickSetupVersion: 2 },
        }));
    }

    async startInstance() {
        const program = path.join(process.env.QX_BUILD, 'tests/signInListener');
        const instance = new RunningProgram(this.context, program, [], { env: this.environment });
        await instance.line(/^listening$/);
        return instance;
    }
}

module.exports = { Desktop };
