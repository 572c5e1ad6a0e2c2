'use strict';

// A user's way through the pages in a real browser, up to the instances of the program that learn of the sign-in.

const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');
const { Backend, otherCode } = require('./support/backend.js');
const { openPage, startBrowser } = require('./support/browser.js');
const { Desktop } = require('./support/desktop.js');
const { until } = require('./support/processes.js');

const address = 'ann@example.com';
const password = 'passw0rd!';

test('a sign-in in the browser reaches the program', async (t) => {
    const backend = await Backend.start(t);
    const desktop = new Desktop(t);
    desktop.registerProgram();
    const first = await desktop.startInstance();
    const second = await desktop.startInstance();
    const browser = await startBrowser(t, backend.url, { env: desktop.environment });
    const { page, complaints } = await openPage(browser, backend.url);
    const query = 'source=native-application&platform=Linux&version=1.0';
    const enter = async (label, text) => {
        await page.getByLabel(label, { exact: true }).fill(text);
        await page.keyboard.press('Enter');
    };
    const heading = (name) => page.getByRole('heading', { name, exact: true }).waitFor();
    const alert = () => page.getByRole('alert').textContent();

    await t.test('the password rules are ticked off as one types', async () => {
        await page.goto(`${backend.url}/sign-in?${query}`);
        await page.getByRole('link', { name: 'Sign Up' }).click();
        await heading('Sign Up');
        await page.getByLabel('Email').fill(address);
        const kept = () => page.locator('.rules li.kept').count();
        for (const [text, count] of [['', 0], ['a', 1], ['a1', 2], ['a1!', 3], ['a1!a1!a1', 4]]) {
            await page.getByLabel('Password').fill(text);
            assert.equal(await kept(), count, text);
        }
    });

    await t.test('a weak password is refused, and what was typed stays', async () => {
        await enter('Password', 'sh0rt!');
        assert.equal(await alert(), 'Password not long enough');
        assert.equal(await page.getByLabel('Email').inputValue(), address);
    });

    await t.test('the code from the mail confirms the account', async () => {
        await enter('Password', password);
        await heading('Confirm Sign Up');
        await enter('Code', otherCode(backend.codeFor(address)));
        assert.equal(await alert(), 'Invalid verification code provided, please try again.');
        await enter('Code', backend.codeFor(address));
        await heading('Sign In');
        assert.match(await page.getByRole('status').textContent(), /^Your account is confirmed/);
        assert.equal(new URL(page.url()).search, `?${query}`);
    });

    await t.test('a wrong password is refused', async () => {
        await enter('Password', 'wr0ng-password');
        assert.equal(await alert(), 'Incorrect username or password.');
    });

    await t.test('the sign-in wakes all instances, which find the token in the file', async () => {
        await enter('Password', password);
        await heading('You are signed in');
        for (const instance of [first, second]) {
            const stored = JSON.parse((await instance.line(/^\{.*\}$/))[0]);
            assert.equal(stored.login, address);
            const answer = await backend.call('InitiateAuth',
                { AuthFlow: 'REFRESH_TOKEN_AUTH', AuthParameters: { REFRESH_TOKEN: stored.token } });
            assert.equal(answer.status, 200, answer.body);
        }
    });

    await t.test('the button opens the link again, by the keyboard too', async () => {
        const from = first.lines.length;
        await page.getByRole('link', { name: 'Open Quorvix' }).focus();
        await page.keyboard.press('Enter');
        await first.line(/^\{.*\}$/, from);
        await until('the desktop handled both links', () => desktop.handlerStatuses().length === 2);
        assert.deepEqual(desktop.handlerStatuses(), ['0', '0']);
    });

    await t.test('a sign-out in one instance reaches the other', async () => {
        const from = second.lines.length;
        first.child.stdin.write('signed out\n');
        await second.line(/^\{.*\}$/, from);
    });

    assert.deepEqual(complaints, []);
    const stored = path.join(desktop.environment.XDG_CONFIG_HOME, 'Quorvix/Token/.token');
    assert.equal(fs.statSync(stored).mode & 0o777, 0o600);
});

test('a forgotten password is replaced in the browser', async (t) => {
    const backend = await Backend.start(t);
    await backend.call('SignUp', { Username: address, Password: password });
    await backend.call('ConfirmSignUp', { Username: address, ConfirmationCode: backend.codeFor(address) });
    const browser = await startBrowser(t, backend.url);
    const { page, complaints } = await openPage(browser, backend.url);

    await page.goto(`${backend.url}/sign-in`);
    await page.getByRole('link', { name: 'Forgot your password?' }).click();
    await page.getByLabel('Email').fill(address);
    await page.getByRole('button', { name: 'Reset My Password' }).click();
    await page.getByLabel('Code', { exact: true }).fill(backend.codeFor(address));
    await page.getByLabel('New Password').fill('n3w-password');
    await page.getByRole('button', { name: 'Change Password' }).click();

    assert.match(await page.getByRole('status').textContent(), /^Your password is changed/);
    const signIn = { AuthFlow: 'USER_PASSWORD_AUTH', AuthParameters: { USERNAME: address, PASSWORD: 'n3w-password' } };
    assert.equal((await backend.call('InitiateAuth', signIn)).status, 200);
    assert.deepEqual(complaints, []);
});
