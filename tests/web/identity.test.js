'use strict';

// The service as the provider's own kit sees it.

const assert = require('node:assert/strict');
const test = require('node:test');
const cognito = require('@aws-sdk/client-cognito-identity-provider');
const { Backend, otherCode } = require('./support/backend.js');
const { atEnd } = require('./support/processes.js');

const password = 'passw0rd!';
const newPassword = 'n3w-password';

/** The kit, which here calls operations by name. */
class Kit {
    static async start(context, config) {
        const kit = new Kit();
        kit.backend = await Backend.start(context, config);
        // It repeats nothing, so that refusals for too many tries are seen.
        kit.client = new cognito.CognitoIdentityProviderClient({
            region: 'local', endpoint: `${kit.backend.url}/auth`, maxAttempts: 1,
        });
        atEnd(context, () => kit.client.destroy());
        return kit;
    }

    call(operation, input) {
        return this.client.send(new cognito[`${operation}Command`]({ ClientId: 'quorvix', ...input }));
    }

    signUp(address, secret = password) {
        return this.call('SignUp', { Username: address, Password: secret });
    }

    confirm(address, code = this.backend.codeFor(address)) {
        return this.call('ConfirmSignUp', { Username: address, ConfirmationCode: code });
    }

    signIn(address, secret = password) {
        const parameters = { USERNAME: address, PASSWORD: secret };
        return this.call('InitiateAuth', { AuthFlow: 'USER_PASSWORD_AUTH', AuthParameters: parameters });
    }

    refresh(token) {
        return this.call('InitiateAuth', { AuthFlow: 'REFRESH_TOKEN_AUTH', AuthParameters: { REFRESH_TOKEN: token } });
    }

    resend(address) {
        return this.call('ResendConfirmationCode', { Username: address });
    }

    forgot(address) {
        return this.call('ForgotPassword', { Username: address });
    }

    confirmForgot(address, code = this.backend.codeFor(address)) {
        return this.call('ConfirmForgotPassword', { Username: address, ConfirmationCode: code, Password: newPassword });
    }

    async confirmedAccount(address) {
        await this.signUp(address);
        await this.confirm(address);
    }
}

/** Expects the kit to make this typed error of the answer. */
async function refuses(call, type, message) {
    await assert.rejects(call, (error) => {
        assert.ok(error instanceof cognito[type], `${error.name} in place of ${type}`);
        assert.equal(error.name, type);
        assert.equal(error.message, message);
        assert.equal(error.$metadata.httpStatusCode, 400);
        return true;
    });
}

function assertDelivered(details) {
    assert.equal(details.AttributeName, 'email');
    assert.equal(details.DeliveryMedium, 'EMAIL');
    assert.match(details.Destination, /^a\*\*\*@e\*\*\*/);
}

test('the operations of an account', async (t) => {
    const kit = await Kit.start(t);

    await t.test('sign-up says where the code is', async () => {
        const answer = await kit.signUp('ann@example.com');
        assert.equal(answer.UserConfirmed, false);
        assert.match(answer.UserSub, /^[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$/);
        assertDelivered(answer.CodeDeliveryDetails);
    });

    await t.test('another code can be had, and confirms', async () => {
        assertDelivered((await kit.resend('ann@example.com')).CodeDeliveryDetails);
        await kit.confirm('ann@example.com');
    });

    let tokens;
    await t.test('a password gives all tokens', async () => {
        const answer = await kit.signIn('Ann@Example.com');
        tokens = answer.AuthenticationResult;
        assert.equal(answer.ChallengeName, undefined);
        assert.equal(tokens.TokenType, 'Bearer');
        assert.ok(tokens.ExpiresIn > 0);
        for (const name of ['AccessToken', 'IdToken', 'RefreshToken']) {
            assert.equal(typeof tokens[name], 'string', name);
        }
    });

    await t.test('a refresh token gives all but another of its kind, again and again', async () => {
        for (let i = 0; i < 2; ++i) {
            const fresh = (await kit.refresh(tokens.RefreshToken)).AuthenticationResult;
            assert.notEqual(fresh.AccessToken, tokens.AccessToken);
            assert.equal(fresh.RefreshToken, undefined);
        }
    });

    await t.test('a forgotten password is replaced, which ends the sign-ins', async () => {
        assertDelivered((await kit.forgot('ann@example.com')).CodeDeliveryDetails);
        await kit.confirmForgot('ann@example.com');
        await refuses(kit.refresh(tokens.RefreshToken), 'NotAuthorizedException', 'Refresh Token has been revoked');
        await refuses(kit.signIn('ann@example.com'), 'NotAuthorizedException', 'Incorrect username or password.');
        assert.ok((await kit.signIn('ann@example.com', newPassword)).AuthenticationResult.RefreshToken);
    });
});

test('the errors are those of the provider', async (t) => {
    const kit = await Kit.start(t, { blockedDomains: ['blocked.example'] });
    const wrongCode = 'Invalid verification code provided, please try again.';
    const voidCode = 'Invalid code provided, please request a code again.';
    await kit.signUp('waiting@example.com');
    await kit.confirmedAccount('known@example.com');

    await t.test('of signing in', async () => {
        const incorrect = 'Incorrect username or password.';
        await refuses(kit.signIn('known@example.com', 'wr0ng-password'), 'NotAuthorizedException', incorrect);
        await refuses(kit.signIn('stranger@example.com'), 'NotAuthorizedException', incorrect);
        for (const secret of [password, 'wr0ng-password']) {
            await refuses(kit.signIn('waiting@example.com', secret), 'UserNotConfirmedException',
                'User is not confirmed.');
        }
        await refuses(kit.refresh('nonsense'), 'NotAuthorizedException', 'Invalid Refresh Token.');
    });

    await t.test('of too many wrong passwords', async () => {
        await kit.confirmedAccount('tried@example.com');
        for (let i = 0; i < 5; ++i) {
            await assert.rejects(kit.signIn('tried@example.com', 'wr0ng-password'), cognito.NotAuthorizedException);
        }
        await refuses(kit.signIn('tried@example.com'), 'NotAuthorizedException', 'Password attempts exceeded');
    });

    await t.test('of signing up', async () => {
        await refuses(kit.signUp('KNOWN@example.com'), 'UsernameExistsException', 'User already exists');
        await refuses(kit.signUp('new@blocked.example'), 'UserLambdaValidationException',
            'PreSignUp failed with error Addresses of blocked.example cannot be used here: choose another one.');
        await refuses(kit.signUp('nobody'), 'InvalidParameterException', 'Username should be an email.');
        for (const [secret, rule] of [['sh0rt!', 'Password not long enough'],
            ['PASSW0RD!', 'Password must have lowercase characters'],
            ['password!', 'Password must have numeric characters'],
            ['passw0rdd', 'Password must have symbol characters']]) {
            await refuses(kit.signUp('new@example.com', secret), 'InvalidPasswordException',
                `Password did not conform with policy: ${rule}`);
        }
    });

    await t.test('of codes', async () => {
        await kit.signUp('codes@example.com');
        const first = kit.backend.codeFor('codes@example.com');
        await refuses(kit.confirm('codes@example.com', otherCode(first)), 'CodeMismatchException', wrongCode);
        await kit.confirm('codes@example.com');
        await kit.forgot('codes@example.com');
        const code = kit.backend.codeFor('codes@example.com');
        await kit.confirmForgot('codes@example.com', code);
        await refuses(kit.confirmForgot('codes@example.com', code), 'ExpiredCodeException', voidCode);
    });

    await t.test('of too many wrong codes', async () => {
        await kit.signUp('guessed@example.com');
        const code = kit.backend.codeFor('guessed@example.com');
        for (let i = 0; i < 5; ++i) {
            await refuses(kit.confirm('guessed@example.com', otherCode(code)), 'CodeMismatchException', wrongCode);
        }
        await refuses(kit.confirm('guessed@example.com', code), 'LimitExceededException',
            'Attempt limit exceeded, please try after some time.');
    });

    await t.test('of an account that is confirmed already', async () => {
        await refuses(kit.confirm('known@example.com', '000000'), 'NotAuthorizedException',
            'User cannot be confirmed. Current status is CONFIRMED');
        await refuses(kit.resend('known@example.com'), 'InvalidParameterException', 'User is already confirmed.');
    });
});
