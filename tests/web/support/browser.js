'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { chromium } = require('playwright-core');
const { atEnd, tempFolder } = require('./processes.js');

/**
 * Starts Chromium without a window, for a test or suite. It opens sign-in links of pages at `origin` without asking, as
 * it does for a user who has allowed it once.
 */
async function startBrowser(context, origin, options = {}) {
    const profile = tempFolder(context);
    const preferences = { protocol_handler: { allowed_origin_protocol_pairs: { [origin]: { quorvix: true } } } };
    fs.mkdirSync(path.join(profile, 'Default'));
    fs.writeFileSync(path.join(profile, 'Default/Preferences'), JSON.stringify(preferences));
    const browser = await chromium.launchPersistentContext(profile, {
        executablePath: '/usr/bin/chromium',
        // Chromium refuses its sandbox to root.
        chromiumSandbox: process.getuid() !== 0,
        ...options,
    });
    atEnd(context, () => browser.close());
    browser.setDefaultTimeout(30000);
    return browser;
}

/** A page that fails the test where it asks anybody but the service, or breaks its own security policy. */
async function openPage(browser, origin) {
    const page = await browser.newPage();
    const complaints = [];
    page.on('request', (request) => {
        if (!request.url().startsWith(`${origin}/`) && !request.url().startsWith('quorvix:')) {
            complaints.push(`It asked for ${request.url()}`);
        }
    });
    page.on('console', (message) => {
        // An answer of status 400 is how a form is refused.
        if (message.type() === 'error' && !message.text().includes('status of 400')) {
            complaints.push(message.text());
        }
    });
    page.on('pageerror', (error) => complaints.push(String(error)));
    return { page, complaints };
}

module.exports = { openPage, startBrowser };
