'use strict';

const { spawnSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { RunningProgram, atEnd, until } = require('./processes.js');

const pause = '0.05'; // s between two events, more than a frame takes

/** An X server without a window manager, for a test or suite. */
class Screen {
    static async start(context) {
        const screen = new Screen();
        const args = ['-displayfd', '1', '-noreset', '-nolisten', 'tcp', '-screen', '0', '1280x800x24'];
        const server = new RunningProgram(context, '/usr/bin/Xvfb', args);
        // Killed, it would leave its lock behind.
        atEnd(context, () => {
            server.child.kill('SIGTERM');
            return server.end;
        });
        screen.display = `:${(await server.line(/^\d+$/))[0]}`;
        return screen;
    }

    /** The visible window whose title contains the text; nothing where there is none. */
    window(title) {
        return this.xdotool('search', '--onlyvisible', '--name', title).stdout.split('\n')[0];
    }

    click(x, y) {
        this.xdotool('mousemove', x, y, 'sleep', pause, 'mousedown', '1', 'sleep', pause, 'mouseup', '1');
    }

    xdotool(...args) {
        const env = { ...process.env, DISPLAY: this.display };
        return spawnSync('/usr/bin/xdotool', args.map(String), { env, encoding: 'utf8' });
    }
}

/** The program on a screen of its own, on the desktop of a user who has seen what greets new ones. */
class Program {
    /** @param deployment  the file that names the services */
    static async start(desktop, deployment) {
        const program = new Program();
        program.desktop = desktop;
        program.screen = await Screen.start(desktop.context);
        const env = { ...desktop.environment, DISPLAY: program.screen.display };
        const args = ['-deployment', deployment, '-size', '1280x800'];
        program.process = new RunningProgram(desktop.context, path.join(process.env.QX_BUILD, 'bin/Quorvix'), args,
            { env });
        await until('there was a window', () => program.screen.window('Quorvix'));
        program.screen.xdotool('windowfocus', '--sync', program.screen.window('Quorvix'));
        return program;
    }

    /** Waits until the title of the window tells of the user; with nobody given, of none. */
    async isOf(address) {
        await until(`the title told of ${address ?? 'nobody'}`,
            () => this.screen.window(address ?? 'Quorvix') && (address || !this.screen.window('@')));
    }

    /** Presses the button of the sign-in window, in its middle, until the browser is asked for a page. */
    async pressSignIn() {
        const before = this.desktop.openedPages().length;
        const isAsked = () => this.desktop.openedPages().length > before;
        let next = 0;
        await until('the browser was asked for a page', () => {
            // What comes before the first frame is lost.
            if (!isAsked() && Date.now() > next) {
                this.screen.click(640, 392);
                next = Date.now() + 2000;
            }
            return isAsked();
        });
        return this.desktop.openedPages().at(-1);
    }

    /** Presses what bears this label, which an agent of the user's looks up. */
    async press(label, window) {
        let found;
        const look = async () => {
            // There is no answer while the window is not shown yet.
            const shown = await this.useTool('ui.tree', window ? { window } : {});
            found = shown?.widgets.find((widget) => widget.label === label && widget.kind === 'button' &&
                widget.visible !== false);
        };
        for (const deadline = Date.now() + 30000; !found && Date.now() < deadline;) {
            await look();
        }
        const [x, y, width, height] = found.box;
        this.screen.click(Math.round(x + width / 2), Math.round(y + height / 2));
    }

    async useTool(name, args) {
        const file = path.join(this.desktop.environment.XDG_RUNTIME_DIR, 'quorvix',
            `agents-${this.process.child.pid}.json`);
        const { port } = JSON.parse(fs.readFileSync(file, 'utf8'));
        const revision = '2026-07-28';
        const meta = {
            'io.modelcontextprotocol/protocolVersion': revision,
            'io.modelcontextprotocol/clientCapabilities': {},
        };
        const response = await fetch(`http://127.0.0.1:${port}/mcp`, {
            method: 'POST',
            headers: {
                'Content-Type': 'application/json', Accept: 'application/json, text/event-stream',
                'MCP-Protocol-Version': revision, 'Mcp-Method': 'tools/call', 'Mcp-Name': name,
            },
            body: JSON.stringify({
                jsonrpc: '2.0', id: 1, method: 'tools/call', params: { name, arguments: args, _meta: meta },
            }),
        });
        return JSON.parse(await response.text()).result.structuredContent;
    }

    /** Ends it as the desktop does at its own end. */
    async end() {
        this.process.child.kill('SIGTERM');
        await this.process.end;
    }
}

module.exports = { Program };
