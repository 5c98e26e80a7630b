#!/usr/bin/env node
// Runs the Khronos glTF validator over the given files (GLB or glTF, any extension).
// Exit status: 0 when no file has an error (warnings and hints are printed but allowed),
// 1 when a file has errors or cannot be read, 2 on wrong usage.
'use strict';

const fs = require('fs');
const path = require('path');
const validator = require('gltf-validator');

const SEVERITY = ['error', 'warning', 'info', 'hint'];

function externalResource(base) {
    return (uri) =>
        new Promise((resolve, reject) => {
            fs.readFile(path.resolve(base, decodeURIComponent(uri)), (err, data) => {
                if (err) {
                    reject(err.toString());
                } else {
                    resolve(new Uint8Array(data));
                }
            });
        });
}

async function validateFile(file) {
    let bytes;
    try {
        bytes = fs.readFileSync(file);
    } catch (err) {
        console.log(`FAIL ${file}: cannot read: ${err.message}`);
        return false;
    }
    let report;
    try {
        report = await validator.validateBytes(new Uint8Array(bytes), {
            uri: path.basename(file),
            maxIssues: 0,
            externalResourceFunction: externalResource(path.dirname(file)),
        });
    } catch (err) {
        console.log(`FAIL ${file}: validator could not run: ${err}`);
        return false;
    }
    const issues = report.issues;
    const ok = issues.numErrors === 0;
    console.log(`${ok ? 'OK  ' : 'FAIL'} ${file}: ${issues.numErrors} errors, ` +
                `${issues.numWarnings} warnings, ${issues.numInfos} infos, ${issues.numHints} hints`);
    for (const m of issues.messages) {
        if (m.severity <= 1) {
            console.log(`  ${SEVERITY[m.severity]} ${m.code} at ${m.pointer || '/'}: ${m.message}`);
        }
    }
    return ok;
}

async function main(files) {
    if (files.length === 0) {
        console.error('usage: validate.js FILE...');
        return 2;
    }
    let failed = 0;
    for (const file of files) {
        if (!(await validateFile(file))) {
            ++failed;
        }
    }
    console.log(`${files.length - failed} of ${files.length} files valid`);
    return failed === 0 ? 0 : 1;
}

main(process.argv.slice(2)).then((code) => process.exit(code));
