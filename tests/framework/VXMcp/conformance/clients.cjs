// usage: node clients.cjs URL: lists and calls tools with the official kits for clients, in every era that they speak.
const assert = require('node:assert/strict');
const older = require('@modelcontextprotocol/sdk/client/index.js');
const olderHttp = require('@modelcontextprotocol/sdk/client/streamableHttp.js');
const newer = require('@modelcontextprotocol/client');

const url = new URL(process.argv[2]);
const info = { name: 'kit', version: '1.0.0' };

const kits = [
    ['1.x', () => [new older.Client(info), new olderHttp.StreamableHTTPClientTransport(url)], '2025-11-25'],
    ...['legacy', 'auto', { pin: '2026-07-28' }].map((mode) => [
        `2.x ${JSON.stringify(mode)}`,
        () => [
            new newer.Client(info, { versionNegotiation: { mode } }),
            new newer.StreamableHTTPClientTransport(url),
        ],
        mode === 'legacy' ? '2025-11-25' : '2026-07-28',
    ]),
];

async function journey(client, transport) {
    await client.connect(transport);
    const { tools } = await client.listTools();
    assert.ok(tools.some((tool) => tool.name === 'test_simple_text'));
    const answer = await client.callTool({ name: 'test_simple_text', arguments: {} });
    assert.equal(answer.content[0].text, 'This is a simple text response for testing.');
    const failure = await client.callTool({ name: 'test_error_handling', arguments: {} });
    assert.equal(failure.isError, true);

    const progress = [];
    const request = { name: 'test_tool_with_progress', arguments: {} };
    const onprogress = (report) => progress.push(report.progress);
    await (client instanceof older.Client
        ? client.callTool(request, undefined, { onprogress })
        : client.callTool(request, { onprogress }));
    assert.deepEqual(progress, [0, 50, 100]);

    const { contents } = await client.readResource({ uri: 'test://static-text' });
    assert.equal(contents[0].text, 'This is the content of the static text resource.');
    const { prompts } = await client.listPrompts();
    assert.ok(prompts.some((prompt) => prompt.name === 'test_simple_prompt'));
    await assert.rejects(client.callTool({ name: 'nonsense', arguments: {} }));
    await client.close();
}

(async () => {
    for (const [name, make, version] of kits) {
        const [client, transport] = make();
        await journey(client, transport);
        const spoken = client.getNegotiatedProtocolVersion?.() ?? transport.protocolVersion;
        assert.equal(spoken, version, name);
        console.log(`${name}: ${spoken}`);
    }
})().catch((error) => {
    console.error(error);
    process.exit(1);
});
