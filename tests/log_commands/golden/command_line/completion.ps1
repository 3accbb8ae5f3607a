# Completion of zeltctl for PowerShell; run it with: zeltctl completion powershell | Out-String | Invoke-Expression
Register-ArgumentCompleter -Native -CommandName zeltctl, zeltctl64 -ScriptBlock {
    param($word, $ast, $position)
    $words = @{
        '' = @('log', 'recording', 'help', 'completion', 'manual', '--help', '--version')
        'completion' = @('bash', 'powershell')
        'log' = @('show', 'errors', 'list', 'why', 'stats', 'export', 'check', 'diff', 'redact', 'follow')
        'log check' = @('--ignore', '--queries', '--json', '-o', '--help')
        'log diff' = @('--tolerance', '--json', '-o', '--help')
        'log errors' = @('--object', '--interface', '--method', '--direction', '--no-warnings', '--all', '--context', '--queries', '--json', '-o', '--help')
        'log export' = @('--html', '--json', '--csv', '--sqlite', '--queries', '-o', '--help')
        'log follow' = @('--object', '--interface', '--method', '--direction', '--calls', '--queries', '--new', '--idle', '-o', '--help')
        'log list' = @('--json', '-o', '--help')
        'log redact' = @('--keep-errors', '-o', '--help')
        'log show' = @('--object', '--interface', '--method', '--direction', '--result', '--calls', '--nested', '--at', '-o', '--help')
        'log stats' = @('--object', '--interface', '--method', '--direction', '--sort', '--top', '--queries', '--json', '-o', '--help')
        'log why' = @('-o', '--help')
        'recording' = @('info', 'profile', 'diff', 'redact', 'trim')
        'recording diff' = @('--tolerance', '--json', '-o', '--help')
        'recording info' = @('--json', '--help')
        'recording profile' = @('--slowest', '--objects', '--trace-events', '--inputs', '--help')
        'recording redact' = @('--keep-errors', '-o', '--help')
        'recording trim' = @('--calls', '--failure', '-o', '--help')
        '--direction' = @('in', 'out')
        '--result' = @('ok', 'failed', 'violation', 'warning')
        '--sort' = @('calls', 'failures', 'warnings', 'violations', 'queries', 'name')
    }
    $given = @($ast.CommandElements | Select-Object -Skip 1 | ForEach-Object { "$_" })
    if ($word) { $given = @($given | Select-Object -SkipLast 1) }
    $key = ''
    foreach ($one in $given) {
        $longer = "$key $one".Trim()
        if ($words.ContainsKey($longer)) { $key = $longer }
    }
    if ($given.Count -gt 0 -and $given[-1].StartsWith('--') -and $words.ContainsKey($given[-1])) {
        $key = $given[-1]
    }
    $words[$key] | Where-Object { $_ -like "$word*" -and ($word -or -not $_.StartsWith('-')) } |
        ForEach-Object { [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_) }
}
