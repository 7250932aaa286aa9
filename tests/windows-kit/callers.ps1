# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
#
# callers.ps1 ROW: starts the product $env:KIT_PRODUCT as people start programs in PowerShell.
# windows-kit.exe starts this script in the row's folder, in a console of its own, and looks at what it leaves.
param([string]$row)
$product = $env:KIT_PRODUCT

switch ($row) {
    'present' { exit 77 }
    'out-file' { & $product --print=one | Out-File -Encoding ascii out.txt }
    'redirection' { & $product --print=two > out.txt }
    'variable' {
        $text = & $product --print=three
        Set-Content -Encoding ascii out.txt "<$text>"
    }
    'exit-code' {
        & $product --exit=42 | Out-Null
        Set-Content -Encoding ascii out.txt $LASTEXITCODE
    }
    'plain-exit-code' {
        & $product --exit=42
        Set-Content -Encoding ascii out.txt $LASTEXITCODE
    }
    'start-process' {
        $process = Start-Process -FilePath $product -ArgumentList '--exit=43' -Wait -PassThru
        Set-Content -Encoding ascii out.txt $process.ExitCode
    }
    'start-process-redirected' {
        Start-Process -FilePath $product -ArgumentList '--print=four' -Wait -RedirectStandardOutput out.txt
    }
    'plain' {
        & $product --wait
        Set-Content -Encoding ascii out.txt 'went on'
    }
}
