'use strict';

// A user's way from the program to the browser and back, with two instances of the program as it is shipped.

const assert = require('node:assert/strict');
const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');
const { Backend, otherCode } = require('./support/backend.js');
const { openPage, startBrowser } = require('./support/browser.js');
const { Desktop } = require('./support/desktop.js');
const { Program } = require('./support/program.js');

const address = 'ann@example.com';
const password = 'passw0rd!';
const newPassword = 'n3w-passw0rd';
const taken = 'bob@example.com';

/** The file of a deployment with the sign-in in the browser. */
function deploymentFile(desktop, backend) {
    const services = { services: 'none', signIn: 'browser' };
    for (const name of ['account', 'converter', 'telemetry', 'logs', 'version', 'webApp', 'website']) {
        services[name] = backend.url;
    }
    const file = path.join(desktop.folder, 'deployment.json');
    fs.writeFileSync(file, JSON.stringify(services));
    return file;
}

/** How often each action was done, as the service tells its operator: [action, count]. */
function statistics(backend) {
    const program = path.join(process.env.QX_BUILD, 'bin/quorvix-backend');
    const table = execFileSync(program, ['stats', '--data', backend.data], { encoding: 'utf8' });
    // The names have single blanks, the columns more between them.
    const rows = table.trim().split('\n').slice(1).map((row) => row.split(/ {2,}/));
    return rows.map(([, action, , count]) => [action, Number(count)]);
}

test('a user of the program signs in by the browser', async (t) => {
    const backend = await Backend.start(t);
    await backend.call('SignUp', { Username: taken, Password: password });
    const desktop = new Desktop(t);
    desktop.registerProgram();
    desktop.registerBrowser();
    desktop.skipGreetings();
    const deployment = deploymentFile(desktop, backend);
    const first = await Program.start(desktop, deployment);
    let second = await Program.start(desktop, deployment);
    const browser = await startBrowser(t, backend.url, { env: desktop.environment });
    const { page, complaints } = await openPage(browser, backend.url);
    const enter = async (label, text) => {
        await page.getByLabel(label, { exact: true }).fill(text);
        await page.keyboard.press('Enter');
    };
    const heading = (name) => page.getByRole('heading', { name, exact: true }).waitFor();
    const refused = (text) => page.getByRole('alert').filter({ hasText: text }).waitFor();
    const bothAreOf = (user) => Promise.all([first.isOf(user), second.isOf(user)]);

    await t.test('the program has the browser open the page', async () => {
        const asked = new URL(await first.pressSignIn());
        assert.equal(asked.origin, backend.url);
        assert.equal(asked.pathname, '/sign-in');
        assert.equal(asked.searchParams.get('source'), 'native-application');
        await page.goto(asked.href);
        await heading('Sign In');
    });

    await t.test('mistakes in the sign-up are told', async () => {
        await page.getByRole('link', { name: 'Sign Up' }).click();
        await heading('Sign Up');
        await page.getByLabel('Email').fill(address);
        await enter('Password', 'sh0rt!');
        await refused('Password not long enough');
        await page.getByLabel('Email').fill(taken);
        await enter('Password', password);
        await refused('User already exists');
    });

    await t.test('the code that was sent last confirms the account', async () => {
        await page.getByLabel('Email').fill(address);
        await enter('Password', password);
        await heading('Confirm Sign Up');
        await enter('Code', otherCode(backend.codeFor(address)));
        await refused('Invalid verification code provided, please try again.');
        await page.getByRole('button', { name: 'Send another code' }).click();
        await page.getByRole('status').waitFor();
        await enter('Code', backend.codeFor(address));
        await heading('Sign In');
    });

    await t.test('the right password signs both instances in', async () => {
        await enter('Password', 'wr0ng-password');
        await refused('Incorrect username or password.');
        await enter('Password', password);
        await heading('You are signed in');
        await bothAreOf(address);
    });

    await t.test('an instance that starts later is signed in by what is stored', async () => {
        await second.end();
        second = await Program.start(desktop, deployment);
        await second.isOf(address);
    });

    await t.test('a sign-out in one instance is seen by the other', async () => {
        await second.press(address);
        await second.press('Sign Out', 'Account');
        await bothAreOf(undefined);
    });

    await t.test('a new password signs both in again', async () => {
        await page.goto(await first.pressSignIn());
        await page.getByRole('link', { name: 'Forgot your password?' }).click();
        await page.getByLabel('Email').fill(address);
        await page.getByRole('button', { name: 'Reset My Password' }).click();
        await page.getByLabel('Code', { exact: true }).fill(backend.codeFor(address));
        await enter('New Password', newPassword);
        await heading('Sign In');
        await enter('Password', newPassword);
        await heading('You are signed in');
        await bothAreOf(address);
    });

    await t.test('the service learns what was done', async () => {
        await Promise.all([first.end(), second.end()]);
        assert.deepEqual(statistics(backend), [['Close Application', 3], ['Sign In', 5], ['Sign Out', 2]]);
    });

    assert.deepEqual(complaints, []);
});
