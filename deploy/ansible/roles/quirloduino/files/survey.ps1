# Lists the Arduino folders of a host as pairs of path and first line of the version marker. Reads
# this host and changes nothing. A folder that two names lead to counts once.
param([string[]] $Folders = @(), [string[]] $Patterns = @())

$names = @($Folders)
foreach ($pattern in $Patterns) {
    $matched = @(Get-Item -Path $pattern -ErrorAction SilentlyContinue | Where-Object { $_.PSIsContainer })
    $names += @($matched | ForEach-Object { $_.FullName } |
        Where-Object { Test-Path -LiteralPath (Join-Path $_ 'lib\version.txt') })
}

$found = New-Object System.Collections.ArrayList
$seen = @{}
foreach ($name in $names) {
    $key = $name.TrimEnd('\').ToLowerInvariant()
    if ($seen.ContainsKey($key)) { continue }
    $seen[$key] = $true
    $marker = ''
    $file = Join-Path $name 'lib\quirloduino.txt'
    if (Test-Path -LiteralPath $file) {
        $marker = [string] (Get-Content -LiteralPath $file -TotalCount 1)
    }
    [void] $found.Add(@($name, $marker))
}

$Ansible.Changed = $false
$Ansible.Result = $found
