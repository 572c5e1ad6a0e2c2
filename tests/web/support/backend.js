'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { RunningProgram, tempFolder } = require('./processes.js');

/** The real service over a data folder of its own, for a test or suite. */
class Backend {
    static async start(context, config = {}) {
        const folder = tempFolder(context);
        const configFile = path.join(folder, 'config.json');
        fs.writeFileSync(configFile, JSON.stringify(config));
        const backend = new Backend();
        backend.data = path.join(folder, 'data');
        const args = ['serve', '--port', '0', '--data', backend.data, '--config', configFile, '--exit-with-parent',
            String(process.pid)];
        backend.process = new RunningProgram(context, path.join(process.env.QX_BUILD, 'bin/quorvix-backend'), args);
        backend.url = (await backend.process.line(/Serving on (http:\S+)/))[1];
        return backend;
    }

    /** The code in the newest mail to `address`. */
    codeFor(address) {
        const outbox = path.join(this.data, 'outbox');
        const mails = fs.readdirSync(outbox).filter((name) => name.endsWith('.eml')).sort().reverse();
        for (const name of mails) {
            const mail = fs.readFileSync(path.join(outbox, name), 'utf8');
            if (mail.includes(`<${address}>`)) {
                return mail.match(/\b\d{6}\b/)[0];
            }
        }
        throw new Error(`There is no mail to ${address}`);
    }

    /** An operation as the application sends it. */
    async call(operation, body) {
        return callIdentity(`${this.url}/auth`, operation, body);
    }
}

/** An identity operation without the provider's kit: status and body as they came. */
async function callIdentity(url, operation, body) {
    const headers = {
        'x-amz-target': `AWSCognitoIdentityProviderService.${operation}`,
        'content-type': 'application/x-amz-json-1.1',
    };
    const response = await fetch(url, { method: 'POST', headers, body: JSON.stringify(body) });
    return { status: response.status, body: await response.text() };
}

/** A code that is not this one. */
function otherCode(code) {
    return String((Number(code) + 1) % 1000000).padStart(6, '0');
}

module.exports = { Backend, callIdentity, otherCode };
