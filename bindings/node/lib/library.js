// Finding and loading the two shared libraries. They are looked for when they are first needed, so requiring the
// package never fails for want of them.
'use strict';

const fs = require('node:fs');
const path = require('node:path');

/** Names folders to look in, and then nothing else is tried. Separated as in PATH. */
const PATH_VARIABLE = 'TALLOWMERE_LIBRARY_PATH';

const onWindows = process.platform === 'win32';
const loaded = new Map();

class LibraryNotFoundError extends Error {
    get name() {
        return 'LibraryNotFoundError';
    }
}

function fileNames(name) {
    return onWindows ? [`${name}.dll`] : [`lib${name}.so.1`, `lib${name}.so`];
}

/**
 * Of the folders of PATH on Windows those with a drive or server and a root. The others are looked for in the current
 * folder or on the current drive, which anybody may have filled.
 */
const wholeFolders = (folders) =>
    folders.filter((folder) => path.win32.isAbsolute(folder) && path.win32.parse(folder).root.length > 1);

/** What to load, in order, and whether it is a path that must exist first. */
function* candidates(name) {
    const explicit = process.env[PATH_VARIABLE];
    const folders = (list) => (list ?? '').split(path.delimiter).filter((folder) => folder !== '');
    // Whole paths: a bare file name is looked for by the system, and not in the current folder.
    function* inFolders(list) {
        for (const folder of list) for (const file of fileNames(name)) yield [path.resolve(folder, file), true];
    }
    if (explicit) {
        yield* inFolders(folders(explicit));
        return;
    }
    yield* inFolders([__dirname]);
    if (onWindows) {
        yield* inFolders(wholeFolders(folders(process.env.PATH)));
    } else {
        for (const file of fileNames(name)) yield [file, false]; // the loader's search: ldconfig, /usr/lib
    }
}

function advice(name) {
    return (
        `Install the Tallowmere libraries, or set ${PATH_VARIABLE} to the folder that holds ${fileNames(name)[0]}.` +
        (process.arch === 'ia32' ? ' This Node has 32 bits; the libraries have 64.' : '')
    );
}

function open(name) {
    const koffi = require('koffi');
    const tried = [];
    for (const [candidate, isPath] of candidates(name)) {
        if (isPath && !fs.existsSync(candidate)) {
            tried.push(`${candidate}: not there`);
            continue;
        }
        try {
            return koffi.load(candidate);
        } catch (error) {
            tried.push(`${candidate}: ${error.message}`);
        }
    }
    throw new LibraryNotFoundError(
        `the library ${name} could not be loaded. Tried:\n${tried.map((line) => `  ${line}\n`).join('')}${advice(name)}`,
    );
}

/**
 * The functions of a library by name, loaded once for the process and never unloaded.
 * prototypes: C declarations, one for each function
 */
function load(name, prototypes) {
    let functions = loaded.get(name);
    if (functions === undefined) {
        const library = open(name);
        functions = {};
        for (const prototype of prototypes) {
            const functionName = /(\w+)\(/.exec(prototype)[1];
            try {
                functions[functionName] = library.func(prototype);
            } catch (error) {
                throw new LibraryNotFoundError(
                    `the library ${name} that was found is too old: ${error.message}. ${advice(name)}`,
                );
            }
        }
        loaded.set(name, functions);
    }
    return functions;
}

module.exports = { LibraryNotFoundError, load, wholeFolders, isLoaded: (name) => loaded.has(name) };
