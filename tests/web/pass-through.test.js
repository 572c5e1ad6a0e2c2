'use strict';

// The service in front of another provider: the emulator cognito-local, whose texts are its own.

const assert = require('node:assert/strict');
const path = require('node:path');
const test = require('node:test');
const cognito = require('@aws-sdk/client-cognito-identity-provider');
const { Backend, callIdentity } = require('./support/backend.js');
const { RunningProgram, atEnd, tempFolder } = require('./support/processes.js');

const code = '123456';
const password = 'Passw0rd!';

/** Starts the emulator. @return its URL */
async function startProvider(context) {
    const program = path.join(process.env.NODE_PATH, 'cognito-local/lib/bin/start.js');
    const provider = new RunningProgram(context, process.execPath, [program], {
        cwd: tempFolder(context), env: { ...process.env, HOST: '127.0.0.1', PORT: '0', CODE: code, NO_COLOR: '1' },
    });
    return (await provider.line(/running on (http:\/\/127\.0\.0\.1:\d+)/))[1];
}

/** Makes an application known to the provider. @return its client identifier */
async function registerApplication(context, url) {
    const credentials = { accessKeyId: 'local', secretAccessKey: 'local' };
    const client = new cognito.CognitoIdentityProviderClient({ region: 'local', endpoint: url, credentials });
    atEnd(context, () => client.destroy());
    const pool = await client.send(new cognito.CreateUserPoolCommand({
        PoolName: 'users', UsernameAttributes: ['email'], AutoVerifiedAttributes: ['email'],
    }));
    const application = await client.send(new cognito.CreateUserPoolClientCommand({
        UserPoolId: pool.UserPool.Id, ClientName: 'quorvix',
        ExplicitAuthFlows: ['ALLOW_USER_PASSWORD_AUTH', 'ALLOW_REFRESH_TOKEN_AUTH'],
    }));
    return application.UserPoolClient.ClientId;
}

function signInBody(secret) {
    return { AuthFlow: 'USER_PASSWORD_AUTH', AuthParameters: { USERNAME: 'ann@example.com', PASSWORD: secret } };
}

test('another provider has the accounts', async (t) => {
    const provider = await startProvider(t);
    const clientId = await registerApplication(t, provider);
    const backend = await Backend.start(t, { identityEndpoint: provider, identityClientId: clientId });
    const answered = async (operation, body) => {
        const answer = await backend.call(operation, body);
        assert.equal(answer.status, 200, answer.body);
        return JSON.parse(answer.body);
    };

    await t.test('an account is made and confirmed there', async () => {
        const made = await answered('SignUp', {
            Username: 'ann@example.com',
            Password: password,
            UserAttributes: [{ Name: 'email', Value: 'ann@example.com' }],
        });
        assert.equal(made.UserConfirmed, false);
        assert.deepEqual(await answered('ConfirmSignUp', { Username: 'ann@example.com', ConfirmationCode: code }), {});
    });

    await t.test('its tokens come through', async () => {
        const tokens = (await answered('InitiateAuth', signInBody(password))).AuthenticationResult;
        const claims = JSON.parse(Buffer.from(tokens.AccessToken.split('.')[1], 'base64url'));
        assert.equal(claims.client_id, clientId);
        const fresh = await answered('InitiateAuth',
            { AuthFlow: 'REFRESH_TOKEN_AUTH', AuthParameters: { REFRESH_TOKEN: tokens.RefreshToken } });
        assert.ok(fresh.AuthenticationResult.AccessToken);
    });

    await t.test('a forgotten password is replaced there', async () => {
        await answered('ForgotPassword', { Username: 'ann@example.com' });
        await answered('ConfirmForgotPassword',
            { Username: 'ann@example.com', ConfirmationCode: code, Password: 'N3w-password' });
        assert.ok((await answered('InitiateAuth', signInBody('N3w-password'))).AuthenticationResult.RefreshToken);
    });

    await t.test('its refusals come back as they are', async () => {
        const refused = [
            ['InitiateAuth', signInBody('Wr0ng-password')],
            ['SignUp', { Username: 'ann@example.com', Password: password }],
            ['ConfirmSignUp', { Username: 'ann@example.com', ConfirmationCode: '000000' }],
            ['ResendConfirmationCode', { Username: 'ann@example.com' }],
        ];
        for (const [operation, body] of refused) {
            const direct = await callIdentity(provider, operation, { ClientId: clientId, ...body });
            assert.ok(direct.status >= 400, `${operation}: ${direct.body}`);
            assert.deepEqual(await backend.call(operation, body), direct, operation);
        }
    });
});
