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

module.exports = { startBrowser };
